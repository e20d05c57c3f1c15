// The content of the installer's one window: a stack of pages, of which the last is shown, and their controls.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "ui/dialog/PagePictures.h"
#include "ui/dialog/rules/PageLayout.h"
#include "ui/dialog/rules/PageState.h"
#include "ui/toolkit/Button.h"
#include "ui/toolkit/Checkbox.h"
#include "ui/toolkit/Dialog.h"
#include "ui/toolkit/HtmlStatic.h"
#include "ui/toolkit/LinkButton.h"
#include "ui/toolkit/ProgressBar.h"
#include "ui/toolkit/Static.h"

namespace pdx {

/// All calls on the UI thread.
class PageView : public Dialog {
  public:
    PageView();

    MessageResult HandleMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
    MessageResult OnNcHitTest(int32_t x, int32_t y) override;
    MessageResult OnCtlColorStatic(HWND child, HDC context) override;
    MessageResult OnEraseBackground(WPARAM context) override;
    MessageResult OnDrawItem(int32_t id, const DRAWITEMSTRUCT* item) override;
    MessageResult OnSetFocus(WPARAM previous) override;
    MessageResult Draw(Graphics& graphics) override;

    /// Replaces all pages, or while prompts are open all pages below them.
    void ReplacePage(PageState page);
    void PushPage(PageState page);
    /// Lays out the last page and repaints the window.
    void ShowTopPage();

    /// The string for a key in the user's language.
    static std::wstring Translate(const wchar_t* key);

  protected:
    /// Wraps the template's controls. Each page sets their texts.
    void createControls();
    PagePictures& pagePictures();

    [[nodiscard]] const PageState& topPage() const { return pages.back(); }
    PageState& topPage() { return pages.back(); }
    /// The page that is shown when all open prompts are answered.
    PageState& pageBelowPrompts();
    /// Sets the bar's position, and stores it in the page below the prompts. Does nothing if it is unchanged.
    void showProgress(int32_t percent);
    /// Changes the title of the page below the prompts.
    void retitle(const wchar_t* key);

    std::deque<PageState> pages{PageState{}};
    size_t openPrompts = 0;

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

  private:
    MessageResult handleDrag(UINT message, WPARAM wparam, LPARAM lparam);
    /// Moves the dragged window with the pointer.
    void followPointer();

    /// The movable parts of the page that is being laid out.
    struct PageBoxes {
        int32_t top;  ///< the first line under the picture
        Box title, subtitle, body, check;
        ButtonRow buttons;
    };
    PageBoxes initialBoxes() const;
    void queueVisibility(PageKind kind);
    void fillWelcome(PageBoxes& boxes);
    void fillOptions();
    void fillBastion(PageBoxes& boxes);
    void fillProgress(const PageState& page, PageBoxes& boxes);
    void fillPrompt(const PageState& page, PageBoxes& boxes);
    /// Sets font and text of a label, and the place and height of its box.
    void setLabel(HtmlStatic& label, std::unique_ptr<Font> labelFont, const std::wstring& text, Box& box, int32_t y);
    void setButtonTexts(const PageState& page);
    void placeButtons(PageBoxes& boxes);

    bool plainBackground = false;
    Color backgroundColor = palette::plainBackground;
    std::shared_ptr<PagePictures> pictures;
    std::optional<Point> grip;  ///< while dragging: the pointer's place in the window
};

}  // namespace pdx
