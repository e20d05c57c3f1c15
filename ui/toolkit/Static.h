// A label of plain text.
#pragma once

#include "ui/toolkit/Control.h"

namespace pdx {

/// The window's style sets the alignment of the text, and where an ellipsis cuts a text that is too long.
class Static : public Control {
  public:
    using Control::Control;

    const char* GetWindowClassName() const override { return "STATIC"; }
    std::wstring GetText() const override { return text; }
    MessageResult OnSetText(LPARAM newText) override;
    MessageResult Draw(Graphics& graphics) override;

    void setTextColor(Color color) {
        textColor = color;
        Invalidate();
    }

  protected:
    /// Stores the text and repaints.
    void storeText(LPARAM newText);

    std::wstring text;
};

}  // namespace pdx
