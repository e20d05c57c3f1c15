// A push button with a filled or outlined rounded shape and a label in capitals.
#pragma once

#include "ui/toolkit/Control.h"
#include "ui/toolkit/rules/ButtonLook.h"

namespace pdx {

class Button : public Control {
  public:
    using Control::Control;

    const char* GetWindowClassName() const override { return "BUTTON"; }
    /// The label as shown: the letters a to z in capitals, all others as they were set.
    std::wstring GetText() const override { return text; }
    MessageResult OnMouseEnter(int32_t, int32_t) override { return repaint(unhandled()); }
    MessageResult OnMouseLeave() override { return repaint(unhandled()); }
    MessageResult OnSetText(LPARAM label) override;
    MessageResult Draw(Graphics& graphics) override;

    /// The size of the label with its margins, in pixels.
    virtual Size GetPreferredSize() const;
    virtual VisualState GetVisualState() const;
    virtual void DrawBackground(Graphics& graphics);
    virtual void DrawContent(Graphics& graphics);

    /// Chooses between the outlined and the filled style, and repaints.
    void setSecondary(bool outlined);

  protected:
    [[nodiscard]] bool isEnabled() const;

    std::wstring text;
    bool secondary = false;
    ButtonColors colors;
};

/// The dialog's close button: a cross on a chip.
class CloseButton : public Button {
  public:
    explicit CloseButton(HWND window = nullptr);
    void DrawContent(Graphics& graphics) override;
};

/// The visual state of a native button or check box.
VisualState nativeButtonState(const Window& window);

}  // namespace pdx
