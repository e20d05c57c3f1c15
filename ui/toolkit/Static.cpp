#include "ui/toolkit/Static.h"

#include "ui/toolkit/Painting.h"

namespace pdx {
namespace {

/// Where a text that is too long is cut, by the style's ellipsis bits.
constexpr struct {
    DWORD style;
    Gdiplus::StringTrimming trimming;
} trimmings[] = {
    {SS_ENDELLIPSIS, Gdiplus::StringTrimmingEllipsisCharacter},
    {SS_PATHELLIPSIS, Gdiplus::StringTrimmingEllipsisPath},
    {SS_WORDELLIPSIS, Gdiplus::StringTrimmingEllipsisWord},
};

}  // namespace

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
    const DWORD style = GetStyle();
    StringFormat format = CreateTextFormat();
    for (const auto& row : trimmings) {
        if ((style & SS_ELLIPSISMASK) != row.style) continue;
        format.SetTrimming(row.trimming);
        // What is to be cut is not to go on in a second line.
        format.AddFlags(Gdiplus::StringFormatFlagsNoWrap);
    }
    if (style & SS_CENTER)
        format.SetAlignment(Gdiplus::StringAlignmentCenter);
    else if (style & SS_RIGHT)
        format.SetAlignment(Gdiplus::StringAlignmentFar);
    const Brush brush(textColor);
    graphics.DrawString(text, font.get(), GetClientRectF(), &format, &brush);
    return handled(1);
}

}  // namespace pdx
