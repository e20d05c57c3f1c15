#include "ui/toolkit/Static.h"

#include "ui/toolkit/Painting.h"
#include "ui/toolkit/rules/LabelStyle.h"

namespace pdx {
MessageResult Static::OnSetText(LPARAM newText) {
    StoreText(newText);
    // The native window never gets the text, so this is the only way to it.
    SetAccessibleName(text);
    return handled();
}

void Static::StoreText(LPARAM newText) {
    Invalidate();
    text = newText ? reinterpret_cast<const wchar_t*>(newText) : L"";
}

MessageResult Static::Draw(Graphics& graphics) {
    const LabelFormat wanted = labelFormat(GetStyle());
    StringFormat format = CreateTextFormat();
    format.SetAlignment(static_cast<Gdiplus::StringAlignment>(wanted.alignment));
    if (wanted.trimming) {
        format.SetTrimming(static_cast<Gdiplus::StringTrimming>(wanted.trimming));
        // What is to be cut is not to go on in a second line.
        format.AddFlags(Gdiplus::StringFormatFlagsNoWrap);
    }
    const Brush brush(textColor);
    graphics.DrawString(text, font.get(), GetClientRectF(), &format, &brush);
    return handled(1);
}

}  // namespace pdx
