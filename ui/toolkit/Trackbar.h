// The thin scroll bar of marked-up text. The native trackbar keeps range and position; this class paints the thumb.
#pragma once

#include "ui/toolkit/Control.h"
#include "ui/toolkit/rules/TrackShape.h"

namespace pdx {

/// TBM_SETPOSNOTIFY, which not every platform header defines. Here it sets the position without a notification.
inline constexpr UINT setPosNotify = WM_USER + 34;

class Trackbar : public Control {
  public:
    using Control::Control;

    const char* GetWindowClassName() const override { return "msctls_trackbar32"; }
    MessageResult OnLButtonDown(WPARAM keys, int32_t x, int32_t y) override;
    MessageResult OnLButtonUp(WPARAM keys, int32_t x, int32_t y) override;
    MessageResult OnMouseMove(int32_t x, int32_t y) override;
    MessageResult OnMouseWheel(int32_t delta, uint32_t keys, int32_t x, int32_t y) override;
    MessageResult OnUserMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
    MessageResult Draw(Graphics& graphics) override;

    /// Clamps the position to the range. A change is set, painted, and posted to the parent as WM_VSCROLL or WM_HSCROLL
    /// with that code (TB_...).
    void SetPositionAndNotify(int64_t position, int32_t code);
    void home();
    void end();
    void lineUp();
    void lineDown();
    void pageUp();
    void pageDown();

    using Window::SetPosition;
    // These send no notification to the parent.
    void SetRange(int32_t minimum, int32_t maximum);
    void SetPosition(int32_t position);
    void SetLineSize(int32_t size);
    void SetPageSize(int32_t size);
    [[nodiscard]] int32_t getPosition() const;
    [[nodiscard]] int32_t getLineSize() const;
    /// The values of the native control now.
    [[nodiscard]] TrackState getState() const;

  private:
    void notify(int32_t code);

    bool dragging = false;
    int32_t dragAnchor = 0;
    int32_t dragStartPosition = 0;
};

}  // namespace pdx
