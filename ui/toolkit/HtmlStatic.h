// A label of marked-up text: bold words, colours, line breaks, and links for mouse and keyboard.
#pragma once

#include <memory>
#include <vector>

#include "ui/toolkit/rules/RunLayout.h"
#include "ui/toolkit/Static.h"
#include "ui/toolkit/Trackbar.h"

namespace pdx {

inline constexpr UINT linkActivated = 0x8000;

/// The WM_NOTIFY record of a followed link; its first fields are those of NMHDR.
struct LinkNotification {
    HWND hwndFrom;
    UINT_PTR idFrom;
    UINT code;            ///< linkActivated
    const wchar_t* href;  ///< valid during the call
};

/// Shows HTML. SetText parses the text with the window's font of that moment. A text that is too tall gets a thin
/// scroll track. The window's style aligns the lines (SS_CENTER, SS_RIGHT). A link only notifies the parent.
class HtmlStatic : public Static {
  public:
    /// Wraps a child of a template.
    explicit HtmlStatic(HWND window);

    /// The line height of all text without its own; takes effect at the next SetText.
    void SetDefaultLineHeight(LineHeight lineHeight) { defaultLineHeight = lineHeight; }
    /// Limits the height of GetPreferredSize; a factor below 1 is a share of the text's height.
    void SetMaxHeight(LineHeight limit) { maxHeight = limit; }
    /// The size of the text in pixels, laid out in the window's present width.
    [[nodiscard]] Size GetPreferredSize() const { return preferredSize(boundsOf(runs), maxHeight); }

    MessageResult HandleMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
    MessageResult OnSetText(LPARAM markup) override;
    MessageResult OnSize(int32_t width, int32_t height) override;
    MessageResult OnMove(int32_t, int32_t) override { return repaint(handled()); }
    MessageResult Draw(Graphics& graphics) override;

    MessageResult OnNcHitTest(int32_t, int32_t) override { return handled(HTCLIENT); }
    MessageResult OnSetCursor(WPARAM window, int32_t hitTest, UINT mouseMessage) override;
    MessageResult OnMouseMove(int32_t x, int32_t y) override;
    MessageResult OnMouseLeave() override;
    MessageResult OnMouseWheel(int32_t delta, uint32_t keys, int32_t x, int32_t y) override;
    MessageResult OnLButtonDown(WPARAM keys, int32_t x, int32_t y) override;
    MessageResult OnLButtonUp(WPARAM keys, int32_t x, int32_t y) override;
    MessageResult OnVScroll(int32_t, int32_t, LPARAM) override { return repaint(handled()); }

    MessageResult OnGetDlgCode(WPARAM) override { return handled(DLGC_STATIC | DLGC_WANTALLKEYS); }
    MessageResult OnKeyDown(WPARAM key, int32_t repeatCount, bool extended, bool wasDown) override;
    MessageResult OnSetFocus(WPARAM previous) override;

    [[nodiscard]] const std::vector<TextRun>& getRuns() const { return runs; }
    [[nodiscard]] const Trackbar& getScrollTrack() const { return *scrollTrack; }

  private:
    /// Parses the stored text: publishes its words as the accessible name and makes its runs.
    void readMarkup();
    void replaceRuns(std::vector<TextRun> newRuns);
    /// Places the text. For the window's own width it also sets up or hides the scroll track.
    void Layout(int32_t width, int32_t height);
    /// Returns false, with the text only partly placed, when it is higher than the limit.
    bool placeText(int32_t width, float heightLimit = std::numeric_limits<float>::infinity());
    /// The run's font, underlined for the link under the pointer or with the focus.
    [[nodiscard]] FontRecord GetRunFont(const TextRun& run) const;

    [[nodiscard]] const TextRun* HitTest(int32_t x, int32_t y) const;
    void ActivateLink();
    /// Moves to the next link, or with Shift to the previous one; false when there is none.
    bool FocusNextLink();
    void FocusNextControl();
    void ScrollIntoView();

    std::unique_ptr<Trackbar> scrollTrack = std::make_unique<Trackbar>();
    std::vector<TextRun> runs;
    // These point into runs; null for none.
    const TextRun* hoveredRun = nullptr;
    const TextRun* pressedRun = nullptr;
    size_t focusedRun = 0;  // runs.size() for none
    LineHeight defaultLineHeight;
    LineHeight maxHeight;
    bool passingFocus = false;
};

}  // namespace pdx
