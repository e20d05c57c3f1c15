// A label of marked-up text: bold words, colours, line breaks, and links that are reached by mouse and by keyboard.
#pragma once

#include <memory>
#include <vector>

#include "ui/toolkit/rules/RunLayout.h"
#include "ui/toolkit/Static.h"
#include "ui/toolkit/Trackbar.h"

namespace pdx {

inline constexpr UINT linkActivated = 0x8000;

/// What the parent is sent with WM_NOTIFY when a link was followed; begins as every notification does (NMHDR).
struct LinkNotification {
    HWND hwndFrom;
    UINT_PTR idFrom;
    UINT code;            ///< linkActivated
    const wchar_t* href;  ///< valid during the call
};

/// Shows HTML: its text is parsed when it is set, with the font that the window has then. A text that is too tall is
/// scrolled by a thin track of its own. The window's style aligns the lines (SS_CENTER, SS_RIGHT). A link does nothing
/// by itself: the parent is told.
class HtmlStatic : public Static {
  public:
    /// Around a child of a template.
    explicit HtmlStatic(HWND window);

    /// For all text without a line height of its own; takes effect at the next SetText.
    void SetDefaultLineHeight(LineHeight lineHeight) { defaultLineHeight = lineHeight; }
    /// A limit for GetPreferredSize: a factor below 1 is the share of the text that is wanted.
    void SetMaxHeight(LineHeight limit) { maxHeight = limit; }
    /// What the text takes, laid out in the window's present width.
    [[nodiscard]] Size GetPreferredSize() const { return preferredSize(boundsOf(runs), maxHeight); }

    MessageResult HandleMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
    MessageResult OnSetText(LPARAM markup) override;
    MessageResult OnSize(int32_t width, int32_t height) override;
    MessageResult OnMove(int32_t x, int32_t y) override;
    MessageResult Draw(Graphics& graphics) override;

    MessageResult OnNcHitTest(int32_t x, int32_t y) override;
    MessageResult OnSetCursor(WPARAM window, int32_t hitTest, UINT mouseMessage) override;
    MessageResult OnMouseMove(int32_t x, int32_t y) override;
    MessageResult OnMouseLeave() override;
    MessageResult OnMouseWheel(int32_t delta, uint32_t keys, int32_t x, int32_t y) override;
    MessageResult OnLButtonDown(WPARAM keys, int32_t x, int32_t y) override;
    MessageResult OnLButtonUp(WPARAM keys, int32_t x, int32_t y) override;
    MessageResult OnVScroll(int32_t code, int32_t position, LPARAM control) override;

    MessageResult OnGetDlgCode(WPARAM key) override;
    MessageResult OnKeyDown(WPARAM key, int32_t repeatCount, bool extended, bool wasDown) override;
    MessageResult OnSetFocus(WPARAM previous) override;

    /// The text as it is placed.
    [[nodiscard]] const std::vector<TextRun>& GetRuns() const { return runs; }
    [[nodiscard]] const Trackbar& GetScrollTrack() const { return *scrollTrack; }

  private:
    /// Publishes the words and makes the runs of the text that is stored.
    void ReadMarkup();
    void ReplaceRuns(std::vector<TextRun> newRuns);
    /// Places the text; for the window's own width also decides whether it scrolls.
    void Layout(int32_t width, int32_t height);
    /// False when the text is higher than the limit; it is not placed then.
    bool PlaceRuns(int32_t width, float highest = std::numeric_limits<float>::infinity());
    /// With a line under the link that the pointer or the focus is on.
    [[nodiscard]] FontRecord GetRunFont(const TextRun& run) const;

    [[nodiscard]] const TextRun* HitTest(int32_t x, int32_t y) const;
    void ActivateLink();
    /// Whether there is a link to go to; with Shift held down the one ahead.
    bool FocusNextLink();
    void FocusNextControl();
    void ScrollIntoView();

    std::unique_ptr<Trackbar> scrollTrack = std::make_unique<Trackbar>();
    std::vector<TextRun> runs;
    // Into runs; null for none.
    const TextRun* hoveredRun = nullptr;
    const TextRun* pressedRun = nullptr;
    size_t focusedRun = 0;  // runs.size() for none
    LineHeight defaultLineHeight;
    LineHeight maxHeight;
    bool passingFocus = false;
};

}  // namespace pdx
