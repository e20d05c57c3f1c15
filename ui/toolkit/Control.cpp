#include "ui/toolkit/Control.h"

#include <commctrl.h>

namespace pdx {

Control::Control(HWND window) : Window(window) { Subclass(); }

Control::~Control() {
    if (hwnd) RemoveWindowSubclass(hwnd, SubclassProc, reinterpret_cast<UINT_PTR>(this));
}

HWND Control::Create(const CreateParams& params) {
    if (hwnd) return hwnd;
    Window::Create(params);
    Subclass();
    return hwnd;
}

void Control::Subclass() {
    if (hwnd)
        SetWindowSubclass(hwnd, SubclassProc, reinterpret_cast<UINT_PTR>(this), reinterpret_cast<DWORD_PTR>(this));
}

LRESULT CALLBACK Control::SubclassProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR,
                                       DWORD_PTR reference) noexcept {
    auto* control = reinterpret_cast<Control*>(reference);
    if (!control) return DefSubclassProc(window, message, wparam, lparam);
    return control->ReceiveMessage(message, wparam, lparam).result;
}

MessageResult Control::showCursor(WORD number) {
    SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(number)));
    return handled(1);
}

MessageResult Control::DefaultProc(UINT message, WPARAM wparam, LPARAM lparam) {
    return handled(DefSubclassProc(hwnd, message, wparam, lparam));
}

}  // namespace pdx
