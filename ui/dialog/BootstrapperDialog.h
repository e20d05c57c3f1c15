// The installer's one window: a stack of pages on the UI thread. It takes the application's messages, asks the user,
// and drives the engine onward.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "core/RunControls.h"
#include "core/RunUi.h"
#include "ui/dialog/DialogGate.h"
#include "ui/dialog/PagePictures.h"
#include "ui/dialog/rules/Closing.h"
#include "ui/dialog/rules/PageLayout.h"
#include "ui/dialog/rules/PageState.h"
#include "ui/dialog/rules/PromptTexts.h"
#include "ui/toolkit/Button.h"
#include "ui/toolkit/Checkbox.h"
#include "ui/toolkit/Dialog.h"
#include "ui/toolkit/HtmlStatic.h"
#include "ui/toolkit/LinkButton.h"
#include "ui/toolkit/ProgressBar.h"
#include "ui/toolkit/Static.h"

namespace pdx {

/// All calls on the UI thread. Whoever makes it deletes it behind its message loop.
class BootstrapperDialog : public Dialog {
  public:
    BootstrapperDialog(RunControls& controls, DialogGate& dialogGate);
    /// Lets go of every thread that waits for the dialog, then destroys the window if it is still there.
    ~BootstrapperDialog() override;

    MessageResult HandleMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
    MessageResult OnInitDialog() override;
    MessageResult OnNcHitTest(int32_t x, int32_t y) override;
    MessageResult OnCtlColorStatic(HWND child, HDC context) override;
    MessageResult OnEraseBackground(WPARAM context) override;
    MessageResult OnDrawItem(int32_t id, const DRAWITEMSTRUCT* item) override;
    MessageResult OnSetFocus(WPARAM previous) override;
    MessageResult OnQueryEndSession() override;
    MessageResult OnCommand(int32_t id, int32_t notification) override;
    MessageResult OnNotify(LPARAM notification) override;
    MessageResult OnAppMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
    MessageResult OnDestroy() override;
    MessageResult Draw(Graphics& graphics) override;

    // ---- Pages (Pages.cpp)

    /// Puts a page in the place of what lies at the bottom: of all pages, or while prompts are open of those below
    /// them.
    void ReplacePage(PageState page);
    void PushPage(PageState page);
    void ShowTopPage();

    // ---- Prompts (Prompts.cpp)

    /// Shows a prompt and waits for the answer, a message box result; 0 if the window goes meanwhile. Where the display
    /// allows no prompt it gives the default at once.
    int32_t ShowPrompt(const Prompt& prompt);

    /// The string for a key in the user's language.
    static std::wstring Translate(const wchar_t* key);

    // ---- Folder and links (InstallFolder.cpp, Links.cpp)

    /// Whether the client may be installed there; if not the user is told why.
    bool ValidateInstallFolder(const std::wstring& folder);

  private:
    void CreateControls();
    PagePictures& Pictures();
    MessageResult HandleDrag(UINT message, WPARAM wparam, LPARAM lparam);
    /// Moves the window so that the pointer keeps its place in it, while it is dragged.
    void FollowPointer();
    PageState& Top() { return pages.back(); }

    /// The places of the movable parts of the page that is being laid out.
    struct PageBoxes {
        int32_t top;  ///< the first line under the picture
        Box title, subtitle, body, check;
        ButtonRow buttons;
    };
    PageBoxes InitialBoxes() const;
    void QueueVisibility(int32_t kind);
    void FillWelcome(PageBoxes& boxes);
    void FillOptions();
    void FillOlderClient(PageBoxes& boxes);
    void FillProgress(const PageState& page, PageBoxes& boxes);
    void FillPrompt(const PageState& page, PageBoxes& boxes);
    void SetLabel(HtmlStatic& label, std::unique_ptr<Font> labelFont, const std::wstring& text, Box& box, int32_t y);
    void SetTitle(std::unique_ptr<Font> titleFont, const std::wstring& text, Box& box, int32_t y);
    void SetBody(HtmlStatic& label, float size, const std::wstring& text, Box& box, int32_t y);
    void SetButtonTexts(const PageState& page);
    void PlaceButtons(PageBoxes& boxes);

    void RunPrompt();
    void RemovePrompt() noexcept;

    MessageResult TakeAppMessage(UINT message, WPARAM wparam, LPARAM lparam);
    void OnStartInstall();
    [[nodiscard]] ClosingFacts GetClosingFacts() const;
    void Perform(CloseDeed deed);
    /// Whether the user wants the run cancelled.
    bool AskToClose();
    void StopInstaller();
    void AnswerPage(int32_t control) { Top().result = control; }
    void OnBrowse();

    void OnDetectComplete();
    void OnUninstallDetected();
    /// Asks whether the older client is to go; gives the prompt's answer.
    int32_t OfferBastionUninstall();
    int32_t OnError(const ErrorInfo& error);
    int32_t OnCacheAcquireComplete(HRESULT status);
    int32_t OnApplyComplete(HRESULT status, int32_t restart);
    void ShowProgressPage(const wchar_t* titleKey, PageRole role = PageRole::ordinary);
    void UpdateProgress(int32_t percent);
    void SetOlderClientTitle();
    PageState& PageBelowPrompts();
    const wchar_t* InstallTitleKey() const;

    void OpenLegalDocument(std::wstring_view type);

    RunControls& run;
    DialogGate& gate;
    bool plainBackground = false;
    Color backgroundColor = palette::plainBackground;
    std::shared_ptr<PagePictures> pictures;

    std::deque<PageState> pages{PageState{}};
    size_t openPrompts = 0;
    std::optional<Point> grip;    ///< from the window's corner to the pointer that drags the window
    bool questionChecked = true;  ///< the error prompt's box as it was last seen

  protected:
    [[nodiscard]] const PageState& TopPage() const { return pages.back(); }

    std::unique_ptr<HtmlStatic> titleLabel;
    std::unique_ptr<HtmlStatic> subtitleLabel;
    std::unique_ptr<HtmlStatic> bodyLabel;
    std::unique_ptr<Checkbox> questionCheck;
    std::unique_ptr<Static> locationLabel;
    std::unique_ptr<Static> locationValue;
    std::unique_ptr<CloseButton> closeButton;
    std::unique_ptr<Button> actionButton;
    std::unique_ptr<Button> actionButton2;
    std::unique_ptr<Button> actionButton3;
    std::unique_ptr<LinkButton> optionsLink;
    std::unique_ptr<LinkButton> browseLink;
    std::unique_ptr<Checkbox> shortcutCheck;
    std::unique_ptr<ProgressBar> progressBar;
};

}  // namespace pdx
