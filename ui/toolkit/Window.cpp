#include "ui/toolkit/Window.h"

#include "platform/Log.h"
#include "ui/toolkit/AccessibleName.h"

namespace pdx {
namespace {

constexpr int textCapacity = 4096;
constexpr UINT lastAppMessage = 0xBFFF;  // registered messages follow

// The halves of a word. The mouse's buttons and wheel give their position unsigned: one left of or above the window
// becomes a large number, which hits nothing.
int32_t low(uintptr_t word) { return LOWORD(word); }
int32_t high(uintptr_t word) { return HIWORD(word); }
int32_t signedLow(uintptr_t word) { return static_cast<int16_t>(LOWORD(word)); }
int32_t signedHigh(uintptr_t word) { return static_cast<int16_t>(HIWORD(word)); }
bool bit(uintptr_t word, int number) { return (word >> number & 1) != 0; }

Rect toRect(const RECT& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }

RECT toNative(const Rect& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }

/// The client rectangle of one window in the client coordinates of another.
Rect mappedClientRect(HWND from, HWND to) {
    // The platform takes a null window for the screen.
    if (!from) return {};
    RECT rect{};
    ::GetClientRect(from, &rect);
    MapWindowPoints(from, to, reinterpret_cast<POINT*>(&rect), 2);
    return toRect(rect);
}

}  // namespace

Window::Window(HWND window) : hwnd(window) {
    if (hwnd) font = CreateFontFromHandle(reinterpret_cast<HFONT>(SendMessageW(hwnd, WM_GETFONT, 0, 0)));
}

Window::~Window() = default;

HWND Window::Create(const CreateParams& params) {
    if (hwnd) return hwnd;
    const char* className = GetWindowClassName();
    hwnd = CreateWindowExA(params.exStyle, className, params.windowName.c_str(), params.style, params.x, params.y,
                           params.width, params.height, params.parent, params.menu, params.instance, params.param);
    if (!hwnd) {
        const DWORD error = GetLastError();
        PDX_LOG(logInfo, "Window::Create",
                "Failed to create window: error=%08x; exStyle=%08x; className=%s; windowName=%s; style=%08x; "
                "parent=%08x; instance=%08x",
                error, params.exStyle, className, params.windowName, params.style,
                reinterpret_cast<uintptr_t>(params.parent), reinterpret_cast<uintptr_t>(params.instance));
    }
    return hwnd;
}

std::wstring Window::GetText() const {
    std::wstring text(textCapacity, L'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(hwnd, text.data(), textCapacity + 1)));
    return text;
}

void Window::SetFont(std::unique_ptr<Font> newFont) {
    if (!newFont) return;
    font = std::move(newFont);
    const std::optional<LOGFONTW> logFont = font->getLogFont();
    NativeFont made(logFont ? CreateFontIndirectW(&*logFont) : nullptr);
    if (!hwnd || !made) return;
    // No redraw flag: native controls would paint at once, in the middle of a change of pages.
    SendMessageW(hwnd, WM_SETFONT, reinterpret_cast<WPARAM>(made.get()), FALSE);
    nativeFont = std::move(made);
    Invalidate();
}

void Window::SetAccessibleName(const std::wstring& text) { publishAccessibleName(hwnd, text); }

Rect Window::GetWindowRect() const {
    RECT rect{};
    ::GetWindowRect(hwnd, &rect);
    return toRect(rect);
}

Rect Window::GetClientRect() const {
    RECT rect{};
    ::GetClientRect(hwnd, &rect);
    return toRect(rect);
}

RectF Window::GetClientRectF() const {
    const Rect rect = GetClientRect();
    return {static_cast<float>(rect.left), static_cast<float>(rect.top), static_cast<float>(rect.width()),
            static_cast<float>(rect.height())};
}

Rect Window::GetRectIn(HWND otherWindow) const { return mappedClientRect(hwnd, otherWindow); }

Rect Window::GetChildRect(HWND child) const { return mappedClientRect(child, hwnd); }

Size Window::GetClientSize() const {
    const Rect rect = GetClientRect();
    return {rect.width(), rect.height()};
}

void Window::SetPosition(const Rect& rect, UINT flags, HWND insertAfter) {
    SetWindowPos(hwnd, insertAfter, rect.left, rect.top, rect.width(), rect.height(), flags);
}

void Window::Invalidate(const Rect* rect, bool erase) {
    // InvalidateRect with a null handle repaints every window of the screen.
    if (!hwnd) return;
    const RECT area = rect ? toNative(*rect) : RECT{};
    InvalidateRect(hwnd, rect ? &area : nullptr, erase);
}

MessageResult Window::HandleMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_MOUSEMOVE && !mouseTracked) beginVisit(lparam);
    if (message == WM_MOUSELEAVE) mouseTracked = false;
    const MessageResult result = callHandler(message, wparam, lparam);
    return result.handled ? result : DefaultProc(message, wparam, lparam);
}

MessageResult Window::callHandler(UINT message, WPARAM wparam, LPARAM lparam) {
    const auto second = static_cast<uintptr_t>(lparam);
    // clang-format off
    switch (message) {
        case WM_INITDIALOG: return OnInitDialog();
        case WM_ERASEBKGND: return OnEraseBackground(wparam);
        case WM_PAINT: return OnPaint();
        case WM_WINDOWPOSCHANGING: return OnWindowPosChanging(lparam);
        case WM_WINDOWPOSCHANGED: return OnWindowPosChanged(lparam);
        case WM_CTLCOLORSTATIC: return OnCtlColorStatic(reinterpret_cast<HWND>(lparam), reinterpret_cast<HDC>(wparam));
        case WM_DRAWITEM: return OnDrawItem(static_cast<int32_t>(wparam), reinterpret_cast<const DRAWITEMSTRUCT*>(lparam));
        case WM_NCHITTEST: return OnNcHitTest(signedLow(second), signedHigh(second));
        case WM_MOUSEMOVE: return OnMouseMove(signedLow(second), signedHigh(second));
        case WM_MOUSEWHEEL: return OnMouseWheel(signedHigh(wparam), LOWORD(wparam), low(second), high(second));
        case WM_MOUSELEAVE: return OnMouseLeave();
        case WM_LBUTTONDOWN: return OnLButtonDown(wparam, low(second), high(second));
        case WM_LBUTTONUP: return OnLButtonUp(wparam, low(second), high(second));
        case WM_COMMAND: return OnCommand(low(wparam), high(wparam));
        case WM_CLOSE: return OnClose();
        case WM_DESTROY: return OnDestroy();
        case WM_SETCURSOR: return OnSetCursor(wparam, low(second), HIWORD(second));
        case WM_NCPAINT: return OnNcPaint(wparam);
        case WM_SETTEXT: return OnSetText(lparam);
        case WM_PRINTCLIENT: return OnPrintClient(wparam, lparam);
        case WM_SETFOCUS: return OnSetFocus(wparam);
        case WM_SIZE: return OnSize(low(second), high(second));
        case WM_MOVE: return OnMove(signedLow(second), signedHigh(second));
        case WM_SETFONT: return OnSetFont(wparam, LOWORD(second) != 0);
        case WM_TIMER: return OnTimer(wparam);
        case WM_QUERYENDSESSION: return OnQueryEndSession();
        case WM_ENDSESSION: return OnEndSession();
        case WM_HSCROLL: return OnHScroll(low(wparam), high(wparam), lparam);
        case WM_VSCROLL: return OnVScroll(low(wparam), high(wparam), lparam);
        case WM_GETDLGCODE: return OnGetDlgCode(wparam);
        case WM_KEYDOWN: return OnKeyDown(wparam, low(second), bit(second, 24), bit(second, 30));
        case WM_NOTIFY: return OnNotify(lparam);
    }
    // clang-format on
    if (message >= WM_USER && message < WM_APP) return OnUserMessage(message, wparam, lparam);
    if (message >= WM_APP && message <= lastAppMessage) return OnAppMessage(message, wparam, lparam);
    return unhandled();
}

void Window::beginVisit(LPARAM place) {
    mouseTracked = true;
    OnMouseEnter(signedLow(static_cast<uintptr_t>(place)), signedHigh(static_cast<uintptr_t>(place)));
    TRACKMOUSEEVENT request{.cbSize = sizeof(TRACKMOUSEEVENT),
                            .dwFlags = TME_HOVER | TME_LEAVE,
                            .hwndTrack = hwnd,
                            .dwHoverTime = HOVER_DEFAULT};
    TrackMouseEvent(&request);
}

MessageResult Window::DefaultProc(UINT message, WPARAM wparam, LPARAM lparam) {
    return handled(DefWindowProcW(hwnd, message, wparam, lparam));
}

MessageResult Window::receiveMessage(UINT message, WPARAM wparam, LPARAM lparam) noexcept {
    try {
        return HandleMessage(message, wparam, lparam);
    } catch (const std::exception& problem) {
        PDX_LOG(logError, "Window::ReceiveMessage", "Message failed: message=%04x; error=%s", message, problem.what());
    } catch (...) {
        PDX_LOG(logError, "Window::ReceiveMessage", "Message failed: message=%04x", message);
    }
    return DefaultProc(message, wparam, lparam);
}

MessageResult Window::OnSetFont(WPARAM newFont, bool redraw) {
    font = CreateFontFromHandle(reinterpret_cast<HFONT>(newFont));
    if (redraw) Invalidate();
    return unhandled();
}

}  // namespace pdx
