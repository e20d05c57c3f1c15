// A thin object around a window handle, with one virtual operation for each message that somebody cares about. All
// objects of the toolkit are touched on the UI thread only.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "ui/toolkit/Fonts.h"
#include "ui/toolkit/Graphics.h"
#include "ui/toolkit/NativeHandles.h"
#include "ui/toolkit/rules/Geometry.h"

namespace pdx {

/// What a message handler says: unhandled hands the message on to DefaultProc.
struct MessageResult {
    bool handled = false;
    LRESULT result = 0;
};

constexpr MessageResult unhandled(LRESULT result = 0) { return {.handled = false, .result = result}; }
constexpr MessageResult handled(LRESULT result = 0) { return {.handled = true, .result = result}; }

/// What Create makes a window from; positions and sizes of CW_USEDEFAULT leave the choice to the platform.
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

/// The object outlives its handle and does not destroy it.
class Window {
  public:
    /// Around an existing handle, whose font it takes over, or around none.
    explicit Window(HWND window = nullptr);
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window();

    /// The class that Create makes a window of; null when there is none.
    virtual const char* GetWindowClassName() const;
    /// Makes the window, unless there is one already, and returns its handle; on failure logs what was asked for and
    /// returns null.
    virtual HWND Create(const CreateParams& params);
    /// At most 4096 characters.
    virtual std::wstring GetText() const;
    virtual void SetText(const std::wstring& text);
    /// Makes a native font of it for the window and keeps both. Null changes nothing.
    virtual void SetFont(std::unique_ptr<Font> newFont);
    virtual void SetAccessibleName(const std::wstring& text);
    /// In screen coordinates.
    virtual Rect GetWindowRect() const;
    virtual Rect GetClientRect() const;
    virtual RectF GetClientRectF() const;
    /// Its own client rectangle in the coordinates of another window's client area.
    virtual Rect GetRectIn(HWND otherWindow) const;
    /// The client rectangle of another window in the coordinates of this one's client area.
    virtual Rect GetChildRect(HWND child) const;
    virtual Size GetClientSize() const;
    virtual void Show(int32_t command);
    virtual void SetPosition(const Rect& rect, UINT flags, HWND insertAfter = nullptr);
    virtual void SetTimer(UINT_PTR id, UINT periodMs);
    virtual void KillTimer(UINT_PTR id);
    /// The whole client area when the rectangle is null.
    virtual void Invalidate(const Rect* rect = nullptr, bool erase = false);
    virtual DWORD GetStyle() const;
    virtual void SetStyle(DWORD style);
    virtual bool IsVisible() const;
    virtual bool HasFocus() const;
    /// Gives the message to its handler, and to DefaultProc when the handler leaves it unhandled or there is none.
    virtual MessageResult HandleMessage(UINT message, WPARAM wparam, LPARAM lparam);
    virtual MessageResult DefaultProc(UINT message, WPARAM wparam, LPARAM lparam);

    // The handlers, each named for its message. All are unhandled but for four here: OnPaint, OnPrintClient, OnSetText
    // (repaints), OnSetFont (takes the font over).
    virtual MessageResult OnInitDialog();
    virtual MessageResult OnEraseBackground(WPARAM wparam);
    virtual MessageResult OnPaint();
    virtual MessageResult OnWindowPosChanging(LPARAM lparam);
    virtual MessageResult OnWindowPosChanged(LPARAM lparam);
    virtual MessageResult OnCtlColorStatic(HWND child, HDC context);
    virtual MessageResult OnDrawItem(int32_t id, const DRAWITEMSTRUCT* item);
    virtual MessageResult OnNcHitTest(int32_t x, int32_t y);
    /// The pointer was not over the window before; OnMouseMove follows for the same message.
    virtual MessageResult OnMouseEnter(int32_t x, int32_t y);
    virtual MessageResult OnMouseMove(int32_t x, int32_t y);
    virtual MessageResult OnMouseWheel(int32_t delta, uint32_t keys, int32_t x, int32_t y);
    virtual MessageResult OnMouseLeave();
    virtual MessageResult OnLButtonDown(WPARAM keys, int32_t x, int32_t y);
    virtual MessageResult OnLButtonUp(WPARAM keys, int32_t x, int32_t y);
    virtual MessageResult OnCommand(int32_t id, int32_t notification);
    virtual MessageResult OnClose();
    virtual MessageResult OnDestroy();
    /// Messages 1024 to 32767.
    virtual MessageResult OnUserMessage(UINT message, WPARAM wparam, LPARAM lparam);
    /// Messages 32768 to 49151.
    virtual MessageResult OnAppMessage(UINT message, WPARAM wparam, LPARAM lparam);
    virtual MessageResult OnSetCursor(WPARAM window, int32_t hitTest, UINT mouseMessage);
    virtual MessageResult OnNcPaint(WPARAM region);
    virtual MessageResult OnSetText(LPARAM text);
    virtual MessageResult OnPrintClient(WPARAM context, LPARAM flags);
    virtual MessageResult OnSetFocus(WPARAM previous);
    virtual MessageResult OnSize(int32_t width, int32_t height);
    virtual MessageResult OnMove(int32_t x, int32_t y);
    virtual MessageResult OnSetFont(WPARAM nativeFont, bool redraw);
    virtual MessageResult OnTimer(WPARAM id);
    virtual MessageResult OnQueryEndSession();
    virtual MessageResult OnEndSession();
    virtual MessageResult OnHScroll(int32_t code, int32_t position, LPARAM control);
    virtual MessageResult OnVScroll(int32_t code, int32_t position, LPARAM control);
    virtual MessageResult OnGetDlgCode(WPARAM key);
    virtual MessageResult OnKeyDown(WPARAM key, int32_t repeatCount, bool extended, bool wasDown);
    virtual MessageResult OnNotify(LPARAM notification);
    /// Paints the client area; what lies behind the window is there already.
    virtual MessageResult Draw(Graphics& graphics);

    [[nodiscard]] HWND GetHandle() const noexcept { return hwnd; }
    [[nodiscard]] const Font* GetFont() const noexcept { return font.get(); }

  protected:
    /// HandleMessage for the platform's procedures: nothing that is thrown leaves it; it is logged, and the message
    /// goes to DefaultProc.
    MessageResult ReceiveMessage(UINT message, WPARAM wparam, LPARAM lparam) noexcept;
    /// Puts what lies behind a part of the window into the buffer of a paint: what its topmost parent shows there.
    virtual void PaintGround(Graphics& buffer, const Box& part);

    HWND hwnd = nullptr;
    bool mouseTracked = false;
    std::unique_ptr<Font> font;

  private:
    /// Unhandled for a message that has no handler.
    MessageResult CallHandler(UINT message, WPARAM wparam, LPARAM lparam);
    void BeginVisit(LPARAM place);

    NativeFont nativeFont;
};

}  // namespace pdx
