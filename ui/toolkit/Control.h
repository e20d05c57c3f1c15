// A window object that subclasses an existing child window: the native control supplies input and focus, the object
// draws it.
#pragma once

#include "ui/toolkit/rules/Palette.h"
#include "ui/toolkit/Window.h"

namespace pdx {

class Control : public Window {
  public:
    /// Around a child of a template, subclassed at once; around none for a control that Create makes.
    explicit Control(HWND window = nullptr);
    ~Control() override;

    /// Makes the control, unless there is one already, and subclasses it.
    HWND Create(const CreateParams& params) override;
    MessageResult DefaultProc(UINT message, WPARAM wparam, LPARAM lparam) override;

  protected:
    Color textColor = palette::defaultText;
    Color hoverTextColor = palette::defaultText;
    Color disabledTextColor = palette::disabledText;

  private:
    static LRESULT CALLBACK SubclassProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR id,
                                         DWORD_PTR reference) noexcept;
    void Subclass();
};

}  // namespace pdx
