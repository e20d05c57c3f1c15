// A check box with its label behind it.
#pragma once

#include "ui/toolkit/Control.h"
#include "ui/toolkit/rules/ButtonLook.h"

namespace pdx {

class Checkbox : public Control {
  public:
    using Control::Control;

    const char* GetWindowClassName() const override { return "BUTTON"; }
    MessageResult OnMouseEnter(int32_t x, int32_t y) override;
    MessageResult OnMouseLeave() override;
    MessageResult Draw(Graphics& graphics) override;
    virtual VisualState GetVisualState() const;

    /// Room for box and label, in pixels.
    [[nodiscard]] Size GetPreferredSize() const;
    [[nodiscard]] bool IsChecked() const;
    void SetChecked(bool checked);

  private:
    CheckboxColors borders;
};

}  // namespace pdx
