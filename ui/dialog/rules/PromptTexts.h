// The questions that the dialog asks the user.
#pragma once

#include "platform/rules/EngineTypes.h"
#include "ui/dialog/rules/PageState.h"

namespace pdx {

/// Texts are given by their keys; a button without a key has the text of the button set.
struct Prompt {
    const wchar_t* title = L"";
    const wchar_t* body = L"";
    uint32_t flags = 0;                ///< as in PageState
    int32_t defaultResult = resultOk;  ///< the answer where no prompt is shown
    const wchar_t* button1 = L"";
    const wchar_t* button2 = L"";
    const wchar_t* checkLabel = L"";
    PageKind kind = pagePrompt;
    PageRole role = PageRole::ordinary;
};

inline constexpr Prompt closePrompt = {.title = L"INSTALLER_CLOSE_TITLE",
                                       .flags = firstSecondary | iconInformation | buttonsOkCancel,
                                       .defaultResult = resultCancel,
                                       .button1 = L"INSTALLER_CONTINUE_INSTALL",
                                       .button2 = L"INSTALLER_CANCEL_INSTALL",
                                       .role = PageRole::closeQuestion};

inline constexpr Prompt clientRunningPrompt = {.title = L"INSTALLER_UNINSTALL_CLIENT_RUNNING_TITLE",
                                               .body = L"INSTALLER_UNINSTALL_CLIENT_RUNNING_BODY",
                                               .flags = secondSecondary | iconError | buttonsRetryCancel,
                                               .defaultResult = resultCancel};

inline constexpr Prompt confirmUninstallPrompt = {.title = L"INSTALLER_UNINSTALL_CONFIRM_TITLE",
                                                  .body = L"INSTALLER_UNINSTALL_CONFIRM_BODY",
                                                  .flags = secondSecondary | iconInformation | buttonsYesNo,
                                                  .defaultResult = resultYes,
                                                  .button1 = L"INSTALLER_UNINSTALL",
                                                  .button2 = L"installer_repair_cta"};

/// Its texts are those of pageBastion.
inline constexpr Prompt bastionPrompt = {.flags = buttonsOkCancel, .defaultResult = resultCancel, .kind = pageBastion};

/// One button on purpose: every other way to end the prompt cancels the download.
inline constexpr Prompt connectionPrompt = {.title = L"INSTALLER_ERROR_CONNECTION_TITLE",
                                            .body = L"INSTALLER_ERROR_CONNECTION",
                                            .flags = iconError,
                                            .defaultResult = resultCancel,
                                            .button1 = L"INSTALLER_RETRY"};

inline constexpr Prompt restartPrompt = {.title = L"INSTALLER_UNINSTALL_RESTART_REQUIRED_TITLE",
                                         .body = L"INSTALLER_UNINSTALL_RESTART_REQUIRED_BODY",
                                         .flags = iconInformation | buttonsYesNo,
                                         .defaultResult = resultYes};

inline constexpr Prompt uninstallCompletePrompt = {
    .title = L"INSTALLER_UNINSTALL_COMPLETE_TITLE", .flags = iconInformation, .button1 = L"INSTALLER_CLOSE"};

inline constexpr Prompt alreadyInstalledPrompt = {.title = L"installer_already_installed_title",
                                                  .body = L"installer_already_installed_body",
                                                  .flags = secondSecondary | iconInformation | buttonsOkCancel,
                                                  .button1 = L"installer_launch_client",
                                                  .button2 = L"installer_repair_cta"};

/// A message about a failure in the dialog, with an OK button.
constexpr Prompt notice(const wchar_t* title, const wchar_t* body) {
    return {.title = title, .body = body, .flags = iconError};
}

inline constexpr Prompt notAuthenticatedPrompt = notice(L"ERROR_INSTALLER_ELEVATED-PERMISSIONS_TITLE",
                                                        L"ERROR_INSTALLER_ELEVATED-PERMISSIONS_NOT-AUTHENTICATED_BODY");
inline constexpr Prompt unknownErrorPrompt = notice(L"INSTALLER_ERROR_UNKNOWN_TITLE", L"INSTALLER_ERROR_UNKNOWN");

/// An error of the run, by its type and code. In the engine's style, but with an error icon and the first button
/// outlined, and with the check box for the error report.
Prompt errorPrompt(uint32_t errorType, uint32_t code, uint32_t uiHint, int32_t defaultResult);

}  // namespace pdx
