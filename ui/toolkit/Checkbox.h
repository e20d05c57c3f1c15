// A check box with its label to the right.
#pragma once

#include "ui/toolkit/Control.h"
#include "ui/toolkit/rules/ButtonLook.h"

namespace pdx {

class Checkbox : public Control {
  public:
    using Control::Control;

    const char* GetWindowClassName() const override { return "BUTTON"; }
    MessageResult OnMouseEnter(int32_t, int32_t) override { return repaint(unhandled()); }
    MessageResult OnMouseLeave() override { return repaint(unhandled()); }
    MessageResult Draw(Graphics& graphics) override;
    virtual VisualState GetVisualState() const;

    /// The size of box and label, in pixels.
    [[nodiscard]] Size GetPreferredSize() const;
    [[nodiscard]] bool IsChecked() const;
    void SetChecked(bool checked);

  private:
    CheckboxColors borders;
};

}  // namespace pdx
