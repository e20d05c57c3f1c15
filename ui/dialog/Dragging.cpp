// Moving the window by its background. The system would do it in a modal loop, which lasts as long as the button is
// held and discards every WM_QUIT. A run that ends meanwhile would hang.
#include <windows.h>
// windowsx.h needs the types of windows.h.
#include <windowsx.h>

#include "ui/dialog/PageView.h"

namespace pdx {

MessageResult PageView::HandleMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    const MessageResult drag = handleDrag(message, wparam, lparam);
    return drag.handled ? drag : Dialog::HandleMessage(message, wparam, lparam);
}

MessageResult PageView::handleDrag(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_NCLBUTTONDOWN: {
            SetForegroundWindow(hwnd);
            const Rect window = GetWindowRect();
            // The place of the press: the pointer may have moved since.
            grip = Point{GET_X_LPARAM(lparam) - window.left, GET_Y_LPARAM(lparam) - window.top};
            SetCapture(hwnd);
            followPointer();
            return handled();
        }
        case WM_NCRBUTTONDOWN:
            // Here too the system would run a modal loop; the menu opens on the release.
            return handled();
        case WM_MOUSEMOVE:
            if (!grip) break;
            if ((wparam & MK_LBUTTON) == 0) {
                ReleaseCapture();
                break;
            }
            followPointer();
            break;
        case WM_LBUTTONUP:
            if (grip) ReleaseCapture();
            break;
        case WM_CAPTURECHANGED:
            grip.reset();
            break;
        default:
            break;
    }
    return unhandled();
}

void PageView::followPointer() {
    POINT pointer{};
    if (!grip || !GetCursorPos(&pointer)) return;
    SetWindowPos(hwnd, nullptr, pointer.x - grip->x, pointer.y - grip->y, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace pdx
