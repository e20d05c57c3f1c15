#include "ui/toolkit/Static.h"

#include "ui/toolkit/Painting.h"
#include "ui/toolkit/rules/LabelStyle.h"

namespace pdx {

namespace flat = Gdiplus::DllExports;

MessageResult Static::OnSetText(LPARAM newText) {
    storeText(newText);
    // The native window never gets the text, so a screen reader finds only this name.
    SetAccessibleName(text);
    return handled();
}

void Static::storeText(LPARAM newText) {
    Invalidate();
    text = newText ? reinterpret_cast<const wchar_t*>(newText) : L"";
}

MessageResult Static::Draw(Graphics& graphics) {
    const LabelFormat wanted = labelFormat(GetStyle());
    StringFormat format = CreateTextFormat();
    format.call(flat::GdipSetStringFormatAlign, static_cast<Gdiplus::StringAlignment>(wanted.alignment));
    if (wanted.trimming) {
        format.call(flat::GdipSetStringFormatTrimming, static_cast<Gdiplus::StringTrimming>(wanted.trimming));
        // A text that is cut with an ellipsis must not wrap.
        format.addFlags(Gdiplus::StringFormatFlagsNoWrap);
    }
    const Brush brush(textColor);
    graphics.drawString(text, font.get(), GetClientRectF(), &format, &brush);
    return handled(1);
}

}  // namespace pdx
