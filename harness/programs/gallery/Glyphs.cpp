#include "harness/programs/gallery/Glyphs.h"

#include <algorithm>
#include <cwctype>
#include <stdexcept>

#include "ui/toolkit/Painting.h"

namespace pdx {
namespace {

constexpr Size canvas{40, 48};
constexpr float characterSize = 24;

/// One of the code points that will never be a character.
constexpr wchar_t noCharacter = 0xFDD0;

bool isEmpty(const std::vector<Color>& pixels) {
    return std::all_of(pixels.begin(), pixels.end(), [](Color pixel) { return pixel >> 24 == 0; });
}

}  // namespace

GlyphCheck::Pixels GlyphCheck::drawn(wchar_t character, const Face& face) {
    const Bitmap bitmap(canvas);
    {
        Graphics graphics(bitmap);
        ApplyQuality(graphics);
        const auto font = CreateFontByName(face.first, characterSize, face.second);
        const StringFormat format = CreateTextFormat();
        const Brush brush(palette::defaultText);
        // Space on the left for marks that are drawn over the letter before them.
        graphics.drawString({&character, 1}, font.get(), {16, 2, 0, 0}, &format, &brush);
    }
    Pixels pixels;
    for (int32_t y = 0; y < canvas.height; ++y)
        for (int32_t x = 0; x < canvas.width; ++x) pixels.push_back(bitmap.getPixel({x, y}));
    return pixels;
}

const GlyphCheck::Pixels& GlyphCheck::boxOfFace(const Face& face) {
    const auto [found, added] = boxes.try_emplace(face);
    if (added) found->second = drawn(noCharacter, face);
    if (isEmpty(found->second)) throw std::runtime_error("a missing glyph draws nothing");
    return found->second;
}

std::wstring GlyphCheck::missing(std::wstring_view text, const Font& font) {
    const Face face = {font.getFamilyName(), font.GetStyle() & (fontBold | fontItalic)};
    std::wstring found;
    for (const wchar_t character : text) {
        if (std::iswspace(character) || character == L'\u00A0' || found.find(character) != std::wstring::npos) continue;
        const auto [row, added] = known.try_emplace({face, character});
        if (added) {
            const Pixels pixels = drawn(character, face);
            row->second = pixels == boxOfFace(face) || isEmpty(pixels);
        }
        if (row->second) found += character;
    }
    return found;
}

}  // namespace pdx
