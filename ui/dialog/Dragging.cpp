// Moving the window by its ground. The system would do it in a loop of its own, which lasts as long as the button is
// held and takes every WM_QUIT away: a run that ends meanwhile would not.
#include "ui/dialog/BootstrapperDialog.h"

namespace pdx {

MessageResult BootstrapperDialog::HandleMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    const MessageResult drag = HandleDrag(message, wparam);
    return drag.handled ? drag : Dialog::HandleMessage(message, wparam, lparam);
}

MessageResult BootstrapperDialog::HandleDrag(UINT message, WPARAM wparam) {
    POINT pointer{};
    switch (message) {
        case WM_NCLBUTTONDOWN: {
            SetForegroundWindow(hwnd);
            GetCursorPos(&pointer);
            const Rect window = GetWindowRect();
            grip = Point{pointer.x - window.left, pointer.y - window.top};
            SetCapture(hwnd);
            return handled();
        }
        case WM_NCRBUTTONDOWN:
            // Here too the system waits in a loop; the menu comes with the release.
            return handled();
        case WM_MOUSEMOVE:
            if (!grip) break;
            if ((wparam & MK_LBUTTON) == 0) {
                ReleaseCapture();
                break;
            }
            GetCursorPos(&pointer);
            SetWindowPos(hwnd, nullptr, pointer.x - grip->x, pointer.y - grip->y, 0, 0,
                         SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
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

}  // namespace pdx
