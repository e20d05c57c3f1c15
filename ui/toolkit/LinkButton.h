// A button that shows only its text, in the colour of links.
#pragma once

#include "ui/toolkit/Button.h"

namespace pdx {

/// Clicks beside the text pass through the button.
class LinkButton : public Button {
  public:
    explicit LinkButton(HWND window = nullptr);

    MessageResult OnNcHitTest(int32_t x, int32_t y) override;
    MessageResult OnSetCursor(WPARAM window, int32_t hitTest, UINT mouseMessage) override;
    MessageResult OnMouseLeave() override;
    MessageResult OnSetFont(WPARAM handle, bool redraw) override;
    MessageResult OnSetText(LPARAM label) override;
    MessageResult OnSize(int32_t width, int32_t height) override;
    void DrawBackground(Graphics&) override {}
    void DrawContent(Graphics& graphics) override;

    /// The rectangle of the text in the client area; valid from SetText on, before the first paint.
    [[nodiscard]] const RectF& getTextBounds() const { return textBounds; }

  private:
    [[nodiscard]] bool isOverText(POINT screenPoint) const;

    RectF textBounds;
    std::unique_ptr<Font> underlinedFont;
    bool overLink = false;
};

}  // namespace pdx
