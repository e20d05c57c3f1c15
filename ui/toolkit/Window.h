// A thin object around a window handle, with one virtual handler for each message. Only the UI thread may use the
// objects of the toolkit.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "ui/toolkit/Fonts.h"
#include "ui/toolkit/Graphics.h"
#include "ui/toolkit/NativeHandles.h"
#include "ui/toolkit/rules/Geometry.h"

namespace pdx {

/// What a message handler returns. An unhandled message is passed to DefaultProc.
struct MessageResult {
    bool handled = false;
    LRESULT result = 0;
};

constexpr MessageResult unhandled(LRESULT result = 0) { return {.handled = false, .result = result}; }
constexpr MessageResult handled(LRESULT result = 0) { return {.handled = true, .result = result}; }

/// The arguments of Create. A position or size of CW_USEDEFAULT leaves the choice to the platform.
struct CreateParams {
    std::string windowName{};
    DWORD style = 0;
    DWORD exStyle = 0;
    int32_t x = CW_USEDEFAULT;
    int32_t y = CW_USEDEFAULT;
    int32_t width = CW_USEDEFAULT;
    int32_t height = CW_USEDEFAULT;
    HWND parent = nullptr;
    HMENU menu = nullptr;
    HINSTANCE instance = nullptr;
    void* param = nullptr;
};

/// The object may outlive its handle, and does not destroy it.
class Window {
  public:
    /// Wraps an existing window and adopts its font; null wraps none.
    explicit Window(HWND window = nullptr);
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window();

    /// The class of the window that Create makes; null when there is none.
    virtual const char* GetWindowClassName() const { return nullptr; }
    /// Makes the window, unless the object has one, and returns its handle. A failure is logged with the arguments and
    /// returns null.
    virtual HWND Create(const CreateParams& params);
    /// The window's text, cut after 4096 characters.
    virtual std::wstring GetText() const;
    virtual void SetText(const std::wstring& text) { SetWindowTextW(hwnd, text.c_str()); }
    /// Keeps the font and gives the window a native font made from it. Null changes nothing.
    virtual void SetFont(std::unique_ptr<Font> newFont);
    /// Publishes the name for screen readers; a failure is silent.
    virtual void SetAccessibleName(const std::wstring& text);
    /// In screen coordinates; this and the next rectangles are in pixels, and all zero without a window.
    virtual Rect GetWindowRect() const;
    virtual Rect GetClientRect() const;
    virtual RectF GetClientRectF() const;
    /// The client rectangle of this window in the client coordinates of another.
    virtual Rect GetRectIn(HWND otherWindow) const;
    /// The client rectangle of another window in the client coordinates of this one.
    virtual Rect GetChildRect(HWND child) const;
    virtual Size GetClientSize() const;
    virtual void Show(int32_t command) { ShowWindow(hwnd, command); }
    virtual void SetPosition(const Rect& rect, UINT flags, HWND insertAfter = nullptr);
    virtual void SetTimer(UINT_PTR id, UINT periodMs) { ::SetTimer(hwnd, id, periodMs, nullptr); }
    virtual void KillTimer(UINT_PTR id) { ::KillTimer(hwnd, id); }
    /// Has the rectangle painted again, or the whole client area when it is null.
    virtual void Invalidate(const Rect* rect = nullptr, bool erase = false);
    virtual DWORD GetStyle() const { return static_cast<DWORD>(GetWindowLongW(hwnd, GWL_STYLE)); }
    virtual void SetStyle(DWORD style) { SetWindowLongW(hwnd, GWL_STYLE, static_cast<LONG>(style)); }
    virtual bool IsVisible() const { return IsWindowVisible(hwnd); }
    virtual bool HasFocus() const { return hwnd && GetFocus() == hwnd; }
    /// Calls the message's handler, and DefaultProc when there is none or when it leaves the message unhandled.
    virtual MessageResult HandleMessage(UINT message, WPARAM wparam, LPARAM lparam);
    virtual MessageResult DefaultProc(UINT message, WPARAM wparam, LPARAM lparam);

    // The handlers, each named for its message. Window itself handles OnPaint and OnPrintClient, repaints in OnSetText
    // and adopts the font in OnSetFont; it leaves all other messages unhandled.
    virtual MessageResult OnInitDialog() { return unhandled(); }
    virtual MessageResult OnEraseBackground(WPARAM /*wparam*/) { return unhandled(); }
    virtual MessageResult OnPaint();
    virtual MessageResult OnWindowPosChanging(LPARAM /*lparam*/) { return unhandled(); }
    virtual MessageResult OnWindowPosChanged(LPARAM /*lparam*/) { return unhandled(); }
    virtual MessageResult OnCtlColorStatic(HWND /*child*/, HDC /*context*/) { return unhandled(); }
    virtual MessageResult OnDrawItem(int32_t /*id*/, const DRAWITEMSTRUCT* /*item*/) { return unhandled(); }
    virtual MessageResult OnNcHitTest(int32_t /*x*/, int32_t /*y*/) { return unhandled(); }
    /// Called for the first WM_MOUSEMOVE of a visit, before OnMouseMove.
    virtual MessageResult OnMouseEnter(int32_t /*x*/, int32_t /*y*/) { return unhandled(); }
    virtual MessageResult OnMouseMove(int32_t /*x*/, int32_t /*y*/) { return unhandled(); }
    virtual MessageResult OnMouseWheel(int32_t /*delta*/, uint32_t /*keys*/, int32_t /*x*/, int32_t /*y*/) {
        return unhandled();
    }
    virtual MessageResult OnMouseLeave() { return unhandled(); }
    virtual MessageResult OnLButtonDown(WPARAM /*keys*/, int32_t /*x*/, int32_t /*y*/) { return unhandled(); }
    virtual MessageResult OnLButtonUp(WPARAM /*keys*/, int32_t /*x*/, int32_t /*y*/) { return unhandled(); }
    virtual MessageResult OnCommand(int32_t /*id*/, int32_t /*notification*/) { return unhandled(); }
    virtual MessageResult OnClose() { return unhandled(); }
    virtual MessageResult OnDestroy() { return unhandled(); }
    /// Messages 1024 to 32767.
    virtual MessageResult OnUserMessage(UINT /*message*/, WPARAM /*wparam*/, LPARAM /*lparam*/) { return unhandled(); }
    /// Messages 32768 to 49151.
    virtual MessageResult OnAppMessage(UINT /*message*/, WPARAM /*wparam*/, LPARAM /*lparam*/) { return unhandled(); }
    virtual MessageResult OnSetCursor(WPARAM /*window*/, int32_t /*hitTest*/, UINT /*mouseMessage*/) {
        return unhandled();
    }
    virtual MessageResult OnNcPaint(WPARAM /*region*/) { return unhandled(); }
    virtual MessageResult OnSetText(LPARAM /*text*/) { return repaint(unhandled()); }
    virtual MessageResult OnPrintClient(WPARAM context, LPARAM flags);
    virtual MessageResult OnSetFocus(WPARAM /*previous*/) { return unhandled(); }
    virtual MessageResult OnSize(int32_t /*width*/, int32_t /*height*/) { return unhandled(); }
    virtual MessageResult OnMove(int32_t /*x*/, int32_t /*y*/) { return unhandled(); }
    virtual MessageResult OnSetFont(WPARAM nativeFont, bool redraw);
    virtual MessageResult OnTimer(WPARAM /*id*/) { return unhandled(); }
    virtual MessageResult OnQueryEndSession() { return unhandled(); }
    virtual MessageResult OnEndSession() { return unhandled(); }
    virtual MessageResult OnHScroll(int32_t /*code*/, int32_t /*position*/, LPARAM /*control*/) { return unhandled(); }
    virtual MessageResult OnVScroll(int32_t /*code*/, int32_t /*position*/, LPARAM /*control*/) { return unhandled(); }
    virtual MessageResult OnGetDlgCode(WPARAM /*key*/) { return unhandled(); }
    virtual MessageResult OnKeyDown(WPARAM /*key*/, int32_t /*repeatCount*/, bool /*extended*/, bool /*wasDown*/) {
        return unhandled();
    }
    virtual MessageResult OnNotify(LPARAM /*notification*/) { return unhandled(); }
    /// Paints the client area over what lies behind the window.
    virtual MessageResult Draw(Graphics& /*graphics*/) { return unhandled(); }

    [[nodiscard]] HWND getHandle() const noexcept { return hwnd; }
    [[nodiscard]] const Font* getFont() const noexcept { return font.get(); }

  protected:
    /// Requests a repaint and returns the given result, for a handler that does nothing else.
    MessageResult repaint(MessageResult result) {
        Invalidate();
        return result;
    }
    /// Calls HandleMessage for the platform's procedures. An exception is logged, and the message is then passed to
    /// DefaultProc.
    MessageResult receiveMessage(UINT message, WPARAM wparam, LPARAM lparam) noexcept;

    HWND hwnd = nullptr;
    bool mouseTracked = false;
    std::unique_ptr<Font> font;

  private:
    /// Unhandled for a message that has no handler.
    MessageResult callHandler(UINT message, WPARAM wparam, LPARAM lparam);
    /// Calls OnMouseEnter and requests the WM_MOUSELEAVE of the visit.
    void beginVisit(LPARAM place);

    NativeFont nativeFont;
};

}  // namespace pdx
