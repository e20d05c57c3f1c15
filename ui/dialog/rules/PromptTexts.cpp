#include "ui/dialog/rules/PromptTexts.h"

#include "platform/rules/ProgramErrors.h"

namespace pdx {
namespace {

struct ErrorText {
    const wchar_t* title;
    const wchar_t* body;
};

struct ErrorRow {
    uint32_t code;
    ErrorText text;
};

constexpr ErrorRow errorRows[] = {
    {errorSystemTooOld, {L"INSTALLER_ERROR_OS_TITLE", L"INSTALLER_ERROR_OS"}},
    {errorSecondInstance, {L"INSTALLER_ERROR_TITLE", L"INSTALLER_ERROR_SINGLE_INSTANCE"}},
    {1336, {L"INSTALLER_ERROR_DISK_SPACE_TITLE", L"INSTALLER_ERROR_DISK_SPACE"}},
    {1601, {L"INSTALLER_ERROR_DISK_SPACE_TITLE", L"INSTALLER_ERROR_DISK_SPACE"}},
    {25000, {L"INSTALLER_ERROR_INSTALLATION-TIMEOUT_TITLE", L"INSTALLER_ERROR_INSTALLATION-TIMEOUT_BODY"}},
};
constexpr ErrorText noRights = {L"ERROR_INSTALLER_ELEVATED-PERMISSIONS_TITLE",
                                L"ERROR_INSTALLER_ELEVATED-PERMISSIONS_AUTHENTICATED_BODY"};
constexpr ErrorText unknown = {unknownErrorPrompt.title, unknownErrorPrompt.body};

constexpr ErrorText errorText(uint32_t errorType, uint32_t code) {
    // 1602 means refused elevation only for ELEVATE errors.
    if (code == userExitCode && errorType == BOOTSTRAPPER_ERROR_TYPE_ELEVATE) return noRights;
    for (const ErrorRow& row : errorRows)
        if (row.code == code) return row.text;
    return unknown;
}

}  // namespace

Prompt errorPrompt(uint32_t errorType, uint32_t code, uint32_t uiHint, int32_t defaultResult) {
    const ErrorText text = errorText(errorType, code);
    return {.title = text.title,
            .body = text.body,
            .flags = (uiHint & ~iconMask) | firstSecondary | iconError,
            .defaultResult = defaultResult,
            // "Send error report", in spite of its name.
            .checkLabel = L"DIALOG_CLEAR-CACHE_CHECKMARK_LABEL"};
}

}  // namespace pdx
