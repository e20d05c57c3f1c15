#include "ui/toolkit/Window.h"

#include "platform/Log.h"
#include "ui/toolkit/AccessibleName.h"
#include "ui/toolkit/rules/MessageRoutes.h"

namespace pdx {
namespace {

constexpr int textCapacity = 4096;

using Arguments = decltype(RoutedMessage::arguments);
using Delivery = MessageResult (*)(Window&, const Arguments&);

int32_t number(intptr_t argument) { return static_cast<int32_t>(argument); }
UINT word(intptr_t argument) { return static_cast<UINT>(argument); }
WPARAM wide(intptr_t argument) { return static_cast<WPARAM>(argument); }

/// The call of a handler with the arguments that its route has unpacked.
Delivery deliveryTo(Handler handler) {
    using A = const Arguments&;
    // clang-format off
    switch (handler) {
        case Handler::none: return nullptr;
        case Handler::initDialog: return [](Window& w, A) { return w.OnInitDialog(); };
        case Handler::eraseBackground: return [](Window& w, A a) { return w.OnEraseBackground(wide(a[0])); };
        case Handler::paint: return [](Window& w, A) { return w.OnPaint(); };
        case Handler::windowPosChanging: return [](Window& w, A a) { return w.OnWindowPosChanging(a[0]); };
        case Handler::windowPosChanged: return [](Window& w, A a) { return w.OnWindowPosChanged(a[0]); };
        case Handler::ctlColorStatic: return [](Window& w, A a) { return w.OnCtlColorStatic(reinterpret_cast<HWND>(a[0]), reinterpret_cast<HDC>(a[1])); };
        case Handler::drawItem: return [](Window& w, A a) { return w.OnDrawItem(number(a[0]), reinterpret_cast<const DRAWITEMSTRUCT*>(a[1])); };
        case Handler::ncHitTest: return [](Window& w, A a) { return w.OnNcHitTest(number(a[0]), number(a[1])); };
        case Handler::mouseEnter: return [](Window& w, A a) { return w.OnMouseEnter(number(a[0]), number(a[1])); };
        case Handler::mouseMove: return [](Window& w, A a) { return w.OnMouseMove(number(a[0]), number(a[1])); };
        case Handler::mouseWheel: return [](Window& w, A a) { return w.OnMouseWheel(number(a[0]), word(a[1]), number(a[2]), number(a[3])); };
        case Handler::mouseLeave: return [](Window& w, A) { return w.OnMouseLeave(); };
        case Handler::lButtonDown: return [](Window& w, A a) { return w.OnLButtonDown(wide(a[0]), number(a[1]), number(a[2])); };
        case Handler::lButtonUp: return [](Window& w, A a) { return w.OnLButtonUp(wide(a[0]), number(a[1]), number(a[2])); };
        case Handler::command: return [](Window& w, A a) { return w.OnCommand(number(a[0]), number(a[1])); };
        case Handler::close: return [](Window& w, A) { return w.OnClose(); };
        case Handler::destroy: return [](Window& w, A) { return w.OnDestroy(); };
        case Handler::userMessage: return [](Window& w, A a) { return w.OnUserMessage(word(a[0]), wide(a[1]), a[2]); };
        case Handler::appMessage: return [](Window& w, A a) { return w.OnAppMessage(word(a[0]), wide(a[1]), a[2]); };
        case Handler::setCursor: return [](Window& w, A a) { return w.OnSetCursor(wide(a[0]), number(a[1]), word(a[2])); };
        case Handler::ncPaint: return [](Window& w, A a) { return w.OnNcPaint(wide(a[0])); };
        case Handler::setText: return [](Window& w, A a) { return w.OnSetText(a[0]); };
        case Handler::printClient: return [](Window& w, A a) { return w.OnPrintClient(wide(a[0]), a[1]); };
        case Handler::setFocus: return [](Window& w, A a) { return w.OnSetFocus(wide(a[0])); };
        case Handler::size: return [](Window& w, A a) { return w.OnSize(number(a[0]), number(a[1])); };
        case Handler::move: return [](Window& w, A a) { return w.OnMove(number(a[0]), number(a[1])); };
        case Handler::setFont: return [](Window& w, A a) { return w.OnSetFont(wide(a[0]), a[1] != 0); };
        case Handler::timer: return [](Window& w, A a) { return w.OnTimer(wide(a[0])); };
        case Handler::queryEndSession: return [](Window& w, A) { return w.OnQueryEndSession(); };
        case Handler::endSession: return [](Window& w, A) { return w.OnEndSession(); };
        case Handler::hScroll: return [](Window& w, A a) { return w.OnHScroll(number(a[0]), number(a[1]), a[2]); };
        case Handler::vScroll: return [](Window& w, A a) { return w.OnVScroll(number(a[0]), number(a[1]), a[2]); };
        case Handler::getDlgCode: return [](Window& w, A a) { return w.OnGetDlgCode(wide(a[0])); };
        case Handler::keyDown: return [](Window& w, A a) { return w.OnKeyDown(wide(a[0]), number(a[1]), a[2] != 0, a[3] != 0); };
        case Handler::notify: return [](Window& w, A a) { return w.OnNotify(a[0]); };
    }
    // clang-format on
    return nullptr;
}

MessageResult deliver(Window& window, const RoutedMessage& routed) {
    const Delivery delivery = deliveryTo(routed.handler);
    return delivery ? delivery(window, routed.arguments) : unhandled();
}

Rect toRect(const RECT& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }

RECT toNative(const Rect& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }

/// The client rectangle of one window in the client coordinates of another.
Rect mappedClientRect(HWND from, HWND to) {
    // To the platform no window is the screen.
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

const char* Window::GetWindowClassName() const { return nullptr; }

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

void Window::SetText(const std::wstring& text) { SetWindowTextW(hwnd, text.c_str()); }

void Window::SetFont(std::unique_ptr<Font> newFont) {
    if (!newFont) return;
    font = std::move(newFont);
    const std::optional<LOGFONTW> logFont = font->GetLogFont();
    NativeFont made(logFont ? CreateFontIndirectW(&*logFont) : nullptr);
    if (!hwnd || !made) return;
    // Without the redraw flag: native controls would paint at once, in the middle of a change of pages.
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

void Window::Show(int32_t command) { ShowWindow(hwnd, command); }

void Window::SetPosition(const Rect& rect, UINT flags, HWND insertAfter) {
    SetWindowPos(hwnd, insertAfter, rect.left, rect.top, rect.width(), rect.height(), flags);
}

void Window::SetTimer(UINT_PTR id, UINT periodMs) { ::SetTimer(hwnd, id, periodMs, nullptr); }

void Window::KillTimer(UINT_PTR id) { ::KillTimer(hwnd, id); }

void Window::Invalidate(const Rect* rect, bool erase) {
    // A null handle would repaint every window of the screen.
    if (!hwnd) return;
    const RECT area = rect ? toNative(*rect) : RECT{};
    InvalidateRect(hwnd, rect ? &area : nullptr, erase);
}

DWORD Window::GetStyle() const { return static_cast<DWORD>(GetWindowLongW(hwnd, GWL_STYLE)); }

void Window::SetStyle(DWORD style) { SetWindowLongW(hwnd, GWL_STYLE, static_cast<LONG>(style)); }

bool Window::IsVisible() const { return IsWindowVisible(hwnd); }

bool Window::HasFocus() const { return hwnd && GetFocus() == hwnd; }

MessageResult Window::HandleMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_MOUSEMOVE && !mouseTracked) BeginVisit(message, wparam, lparam);
    if (message == WM_MOUSELEAVE) mouseTracked = false;
    const MessageResult result = deliver(*this, routeMessage(message, wparam, lparam));
    return result.handled ? result : DefaultProc(message, wparam, lparam);
}

void Window::BeginVisit(UINT message, WPARAM wparam, LPARAM lparam) {
    mouseTracked = true;
    deliver(*this, routeMessage(message, wparam, lparam, true));
    TRACKMOUSEEVENT request{.cbSize = sizeof(TRACKMOUSEEVENT),
                            .dwFlags = TME_HOVER | TME_LEAVE,
                            .hwndTrack = hwnd,
                            .dwHoverTime = HOVER_DEFAULT};
    TrackMouseEvent(&request);
}

MessageResult Window::DefaultProc(UINT message, WPARAM wparam, LPARAM lparam) {
    return handled(DefWindowProcW(hwnd, message, wparam, lparam));
}

MessageResult Window::ReceiveMessage(UINT message, WPARAM wparam, LPARAM lparam) noexcept {
    try {
        return HandleMessage(message, wparam, lparam);
    } catch (const std::exception& problem) {
        PDX_LOG(logError, "Window::ReceiveMessage", "Message failed: message=%04x; error=%s", message, problem.what());
    } catch (...) {
        PDX_LOG(logError, "Window::ReceiveMessage", "Message failed: message=%04x", message);
    }
    return DefaultProc(message, wparam, lparam);
}

MessageResult Window::OnSetText(LPARAM) {
    Invalidate();
    return unhandled();
}

MessageResult Window::OnSetFont(WPARAM newFont, bool redraw) {
    font = CreateFontFromHandle(reinterpret_cast<HFONT>(newFont));
    if (redraw) Invalidate();
    return unhandled();
}

MessageResult Window::OnInitDialog() { return unhandled(); }
MessageResult Window::OnEraseBackground(WPARAM) { return unhandled(); }
MessageResult Window::OnWindowPosChanging(LPARAM) { return unhandled(); }
MessageResult Window::OnWindowPosChanged(LPARAM) { return unhandled(); }
MessageResult Window::OnCtlColorStatic(HWND, HDC) { return unhandled(); }
MessageResult Window::OnDrawItem(int32_t, const DRAWITEMSTRUCT*) { return unhandled(); }
MessageResult Window::OnNcHitTest(int32_t, int32_t) { return unhandled(); }
MessageResult Window::OnMouseEnter(int32_t, int32_t) { return unhandled(); }
MessageResult Window::OnMouseMove(int32_t, int32_t) { return unhandled(); }
MessageResult Window::OnMouseWheel(int32_t, uint32_t, int32_t, int32_t) { return unhandled(); }
MessageResult Window::OnMouseLeave() { return unhandled(); }
MessageResult Window::OnLButtonDown(WPARAM, int32_t, int32_t) { return unhandled(); }
MessageResult Window::OnLButtonUp(WPARAM, int32_t, int32_t) { return unhandled(); }
MessageResult Window::OnCommand(int32_t, int32_t) { return unhandled(); }
MessageResult Window::OnClose() { return unhandled(); }
MessageResult Window::OnDestroy() { return unhandled(); }
MessageResult Window::OnUserMessage(UINT, WPARAM, LPARAM) { return unhandled(); }
MessageResult Window::OnAppMessage(UINT, WPARAM, LPARAM) { return unhandled(); }
MessageResult Window::OnSetCursor(WPARAM, int32_t, UINT) { return unhandled(); }
MessageResult Window::OnNcPaint(WPARAM) { return unhandled(); }
MessageResult Window::OnSetFocus(WPARAM) { return unhandled(); }
MessageResult Window::OnSize(int32_t, int32_t) { return unhandled(); }
MessageResult Window::OnMove(int32_t, int32_t) { return unhandled(); }
MessageResult Window::OnTimer(WPARAM) { return unhandled(); }
MessageResult Window::OnQueryEndSession() { return unhandled(); }
MessageResult Window::OnEndSession() { return unhandled(); }
MessageResult Window::OnHScroll(int32_t, int32_t, LPARAM) { return unhandled(); }
MessageResult Window::OnVScroll(int32_t, int32_t, LPARAM) { return unhandled(); }
MessageResult Window::OnGetDlgCode(WPARAM) { return unhandled(); }
MessageResult Window::OnKeyDown(WPARAM, int32_t, bool, bool) { return unhandled(); }
MessageResult Window::OnNotify(LPARAM) { return unhandled(); }
MessageResult Window::Draw(Graphics&) { return unhandled(); }

}  // namespace pdx
