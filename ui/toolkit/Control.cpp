#include "ui/toolkit/Control.h"

#include <commctrl.h>

namespace pdx {

Control::Control(HWND window) : Window(window) { subclass(); }

Control::~Control() {
    if (hwnd) RemoveWindowSubclass(hwnd, subclassProc, reinterpret_cast<UINT_PTR>(this));
}

HWND Control::Create(const CreateParams& params) {
    if (hwnd) return hwnd;
    Window::Create(params);
    subclass();
    return hwnd;
}

void Control::subclass() {
    if (hwnd)
        SetWindowSubclass(hwnd, subclassProc, reinterpret_cast<UINT_PTR>(this), reinterpret_cast<DWORD_PTR>(this));
}

LRESULT CALLBACK Control::subclassProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR,
                                       DWORD_PTR reference) noexcept {
    auto* control = reinterpret_cast<Control*>(reference);
    if (!control) return DefSubclassProc(window, message, wparam, lparam);
    return control->receiveMessage(message, wparam, lparam).result;
}

MessageResult Control::showCursor(WORD number) {
    SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(number)));
    return handled(1);
}

MessageResult Control::DefaultProc(UINT message, WPARAM wparam, LPARAM lparam) {
    return handled(DefSubclassProc(hwnd, message, wparam, lparam));
}

}  // namespace pdx
