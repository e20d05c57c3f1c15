// What every widget paints with: the quality of a surface, the rounded outline, text in a rectangle.
#pragma once

#include <string_view>

#include "ui/toolkit/Fonts.h"
#include "ui/toolkit/Graphics.h"

namespace pdx {

/// Sets compositing, scaling, anti-aliasing of lines and of text; for every surface that is drawn on.
void ApplyQuality(Graphics& graphics);

/// A closed outline with corners of that radius; one of more than half a side gives a capsule.
Path CreateRoundedPath(const Box& box, int32_t radius);

/// For all measuring and drawing of text, so that the width that was measured is the width that is drawn: typographic,
/// with trailing spaces, independent of the screen's device.
StringFormat CreateTextFormat();

/// Draws the lines under and through a text that was drawn in that rectangle, as far as its font has them and the
/// platform leaves them out.
void DrawFontLines(Graphics& graphics, const Font& font, const RectF& text, const Brush& brush);

/// Draws the text in the middle of the rectangle's height, aligned across as told, and returns the rectangle that the
/// text takes. A null font or brush draws nothing.
RectF DrawTextInRect(Graphics& graphics, std::wstring_view text, const Font* font, const RectF& layout,
                     const Brush* brush, Gdiplus::StringAlignment horizontalAlign);

}  // namespace pdx
