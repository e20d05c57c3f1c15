// The painting of a window, through a buffer that begins as a copy of what lies behind it.
#include "ui/toolkit/Painting.h"
#include "ui/toolkit/Window.h"

namespace pdx {
namespace {

/// The rectangle to paint, extended by one pixel to the right and below, so that it is never empty.
Box paintedBox(const RECT& rect) {
    return {rect.left, rect.top, rect.right - rect.left + 1, rect.bottom - rect.top + 1};
}

/// A pair of BeginPaint and EndPaint.
class PaintSession {
  public:
    explicit PaintSession(HWND painted) : window(painted) { BeginPaint(window, &paint); }
    ~PaintSession() { EndPaint(window, &paint); }
    PaintSession(const PaintSession&) = delete;
    PaintSession& operator=(const PaintSession&) = delete;
    [[nodiscard]] HDC getContext() const { return paint.hdc; }
    [[nodiscard]] Box getBox() const { return paintedBox(paint.rcPaint); }

  private:
    HWND window;
    PAINTSTRUCT paint{};
};

bool isChild(HWND window) { return (GetWindowLongW(window, GWL_STYLE) & WS_CHILD) != 0; }

/// The nearest window, from this one upwards, that is not a child; null for none.
HWND topAncestor(HWND window) {
    while (window && isChild(window)) window = GetParent(window);
    return window;
}

}  // namespace

MessageResult Window::OnPaint() {
    const Size size = GetClientSize();
    const Bitmap picture(size);
    Graphics buffer(picture);
    ApplyQuality(buffer);
    RECT update{};
    GetUpdateRect(hwnd, &update, FALSE);
    const Box ground = paintedBox(update);
    const HWND ancestor = topAncestor(hwnd);
    if (ancestor && ancestor != hwnd) drawParent(buffer, ancestor, GetRectIn(ancestor), ground);

    const PaintSession session(hwnd);
    Graphics screen(session.getContext());
    const Box box = session.getBox();
    buffer.setClip(box);
    Draw(buffer);
    ApplyQuality(screen);
    screen.setCompositingMode(Gdiplus::CompositingModeSourceCopy);
    // Nothing shows outside the client area, and a copy beyond the picture's edge is many times slower in Wine.
    screen.copyImage(picture, intersection(box, {0, 0, size.width, size.height}));
    // Another window may have uncovered more of this one meanwhile.
    if (intersection(box, ground) != box) Invalidate();
    return handled();
}

MessageResult Window::OnPrintClient(WPARAM context, LPARAM) {
    Graphics graphics(reinterpret_cast<HDC>(context));
    ApplyQuality(graphics);
    RECT shown{};
    if (GetClipBox(reinterpret_cast<HDC>(context), &shown) > NULLREGION)
        graphics.limitTo({shown.left, shown.top, shown.right - shown.left, shown.bottom - shown.top});
    Draw(graphics);
    return handled();
}

}  // namespace pdx
