// Helpers for painting: the quality of a surface, the ground under a child, the rounded outline, text in a rectangle.
#pragma once

#include <string_view>

#include "ui/toolkit/Fonts.h"
#include "ui/toolkit/Graphics.h"

namespace pdx {

/// Sets compositing, scaling and anti-aliasing; called for every surface that is drawn on.
void ApplyQuality(Graphics& graphics);

/// Draws into a child's buffer what its parent shows under it. `place` is the child's rectangle in the parent. Only
/// `part`, in the child's coordinates, is drawn.
void drawParent(Graphics& buffer, HWND parent, const Rect& place, const Box& part);

/// A closed outline with rounded corners; a radius of more than half a side gives a capsule.
Path CreateRoundedPath(const Box& box, int32_t radius);

/// The format for measuring and drawing all text, so that both give the same width: typographic, with trailing spaces,
/// independent of the screen's device. A failure is logged once, and text is then drawn with GDI+'s default.
StringFormat CreateTextFormat();

/// The width and height of a line of text as a window draws it; all zero for a null font.
RectF measureText(HWND window, std::wstring_view text, const Font* font);

/// Draws the lines under and through a text, as its font asks, where the platform does not draw them itself (Wine).
void drawFontLines(Graphics& graphics, const Font& font, const RectF& text, const Brush& brush);

/// Draws the text with that horizontal alignment, vertically centred, and returns the rectangle that the text takes.
/// A null font or brush draws nothing.
RectF DrawTextInRect(Graphics& graphics, std::wstring_view text, const Font* font, const RectF& layout,
                     const Brush* brush, Gdiplus::StringAlignment horizontalAlign);

}  // namespace pdx
