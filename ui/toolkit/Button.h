// A push button with a filled or outlined rounded shape and its label in capitals.
#pragma once

#include "ui/toolkit/Control.h"
#include "ui/toolkit/rules/ButtonLook.h"

namespace pdx {

class Button : public Control {
  public:
    using Control::Control;

    const char* GetWindowClassName() const override { return "BUTTON"; }
    /// The label as it is shown: the letters a to z in capitals, all others as they were given.
    std::wstring GetText() const override { return text; }
    MessageResult OnMouseEnter(int32_t x, int32_t y) override;
    MessageResult OnMouseLeave() override;
    MessageResult OnSetText(LPARAM label) override;
    MessageResult Draw(Graphics& graphics) override;

    /// Room for the label with its margins, in pixels.
    virtual Size GetPreferredSize() const;
    virtual VisualState GetVisualState() const;
    virtual void DrawBackground(Graphics& graphics);
    virtual void DrawContent(Graphics& graphics);

    /// Draws the outlined style.
    void SetSecondary(bool outlined);
    [[nodiscard]] bool IsSecondary() const { return secondary; }

  protected:
    [[nodiscard]] bool IsUnderCursor() const;
    [[nodiscard]] bool IsEnabled() const;

    std::wstring text;
    bool secondary = false;
    ButtonColors colors;
};

/// The cross in the corner.
class CloseButton : public Button {
  public:
    explicit CloseButton(HWND window = nullptr);
    void DrawContent(Graphics& graphics) override;
};

/// The state of a native button, by the rule that buttons and check boxes share.
VisualState nativeButtonState(const Window& window);

}  // namespace pdx
