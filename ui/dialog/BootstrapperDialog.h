// The installer's dialog: it follows the run's steps, asks the user, and starts the next step.
#pragma once

#include <string>
#include <string_view>

#include "core/RunControls.h"
#include "core/RunUi.h"
#include "ui/dialog/DialogGate.h"
#include "ui/dialog/PageView.h"
#include "ui/dialog/rules/Closing.h"
#include "ui/dialog/rules/PromptTexts.h"

namespace pdx {

/// All calls on the UI thread, where the maker deletes the object after its message loop.
class BootstrapperDialog : public PageView {
  public:
    BootstrapperDialog(RunControls& controls, DialogGate& dialogGate);
    /// Releases every thread that waits for the dialog, then destroys the window if it still exists.
    ~BootstrapperDialog() override;

    MessageResult OnInitDialog() override;
    MessageResult OnQueryEndSession() override;
    MessageResult OnCommand(int32_t id, int32_t notification) override;
    MessageResult OnNotify(LPARAM notification) override;
    MessageResult OnAppMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
    MessageResult OnDestroy() override;

    /// Shows a prompt and waits for the answer, a message box result; 0 if the window is destroyed meanwhile. Returns
    /// the default at once where the display allows no prompt. (Prompts.cpp)
    int32_t ShowPrompt(const Prompt& prompt);

    /// Whether the client may be installed there; if not, shows the reason in a prompt. (InstallFolder.cpp)
    bool ValidateInstallFolder(const std::wstring& folder);

  private:
    // Prompts.cpp
    void runPrompt();
    void removePrompt() noexcept;

    // AppMessages.cpp
    MessageResult takeAppMessage(UINT message, WPARAM wparam, LPARAM lparam);

    // RunSteps.cpp
    void OnDetectComplete();
    void confirmUninstall();
    /// Asks whether to uninstall the older client; returns the prompt's answer.
    int32_t offerBastionUninstall();
    int32_t OnError(const ErrorInfo& error);
    int32_t OnCacheAcquireComplete(HRESULT status);
    int32_t OnApplyComplete(HRESULT status, int32_t restart);
    void showProgressPage(const wchar_t* titleKey, PageRole role = PageRole::ordinary);
    const wchar_t* installTitleKey() const;

    // Commands.cpp
    void startInstall();
    [[nodiscard]] ClosingFacts closingFacts() const;
    void close(CloseAction action);
    /// Whether the user wants the run cancelled.
    bool askToClose();
    void stopInstaller();
    void answerPage(int32_t control) { topPage().result = control; }

    // InstallFolder.cpp, Links.cpp
    void browse();
    void OpenLegalDocument(std::wstring_view type);

    RunControls& run;
    DialogGate& gate;
    bool questionChecked = true;  ///< the last state of the error prompt's box
};

}  // namespace pdx
