// A window object that subclasses an existing child window: the native control supplies input and focus, the object
// draws it.
#pragma once

#include "ui/toolkit/rules/Palette.h"
#include "ui/toolkit/Window.h"

namespace pdx {

/// Numbers of the platform's cursors.
inline constexpr WORD arrowCursor = 32512;
inline constexpr WORD handCursor = 32649;

class Control : public Window {
  public:
    /// Wraps and subclasses a child of a template; null is for a control that Create makes.
    explicit Control(HWND window = nullptr);
    ~Control() override;

    /// Makes the control, unless the object has one, and subclasses it. Returns null on failure, which is logged.
    HWND Create(const CreateParams& params) override;
    MessageResult DefaultProc(UINT message, WPARAM wparam, LPARAM lparam) override;

  protected:
    /// Sets one of the platform's cursors; returns "handled" with the result 1, as WM_SETCURSOR expects.
    static MessageResult showCursor(WORD number);

    Color textColor = palette::defaultText;
    Color hoverTextColor = palette::defaultText;
    Color disabledTextColor = palette::disabledText;

  private:
    static LRESULT CALLBACK subclassProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR id,
                                         DWORD_PTR reference) noexcept;
    void subclass();
};

}  // namespace pdx
