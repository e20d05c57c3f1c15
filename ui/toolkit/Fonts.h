// The fonts of the interface: private faces from memory, and fonts by name, native handle or record. Sizes are pixels
// and are never scaled.
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "ui/toolkit/GdiPlus.h"

namespace pdx {

/// The face of all text, and the face of the install path.
inline constexpr wchar_t textFace[] = L"TT Commons";
inline constexpr wchar_t pathFace[] = L"Apercu Mono Pro";

/// Resource numbers of the fonts, type "PDX_FONT".
inline constexpr uint16_t fontNumbers[] = {102, 103};

/// Bits of a font's style.
enum FontStyle : int32_t {
    fontRegular = 0,
    fontBold = 1,
    fontItalic = 2,
    fontUnderline = 4,
    fontStrikeout = 8,
};

/// The style bits of a font record; a weight above 400 is bold.
constexpr int32_t fontStyle(int32_t weight, bool italic, bool underline, bool strikeout) {
    return (weight > 400 ? fontBold : 0) | (italic ? fontItalic : 0) | (underline ? fontUnderline : 0) |
           (strikeout ? fontStrikeout : 0);
}

class Font : public GdiPlusObject<Gdiplus::GpFont, Gdiplus::DllExports::GdipDeleteFont> {
  public:
    /// The family is not owned.
    Font(const Gdiplus::GpFontFamily* family, float size, int32_t style, Gdiplus::Unit unit);
    [[nodiscard]] float getSize() const;
    [[nodiscard]] int32_t GetStyle() const;
    [[nodiscard]] Gdiplus::Unit getUnit() const;
    [[nodiscard]] std::wstring getFamilyName() const;
    /// Line height in pixels at that many dots per inch.
    [[nodiscard]] float getHeight(float dpi) const;
    /// The distance from the top of a line to its baseline, in the unit of the size.
    [[nodiscard]] float getAscent() const;
    /// The record from which a native font is made; nothing when there is no font.
    [[nodiscard]] std::optional<LOGFONTW> getLogFont() const;
};

/// A font of a private face; the sign of the size is ignored. Without such a face, or such a style of it, the font has
/// the platform's sans-serif face. That is not a failure, but the first time for one of the library's faces is logged.
std::unique_ptr<Font> CreateFontByName(const std::wstring& family, float emSizePixels, int32_t style);
inline std::unique_ptr<Font> textFont(float emSizePixels, int32_t style) {
    return CreateFontByName(textFace, emSizePixels, style);
}
/// Null when the handle is not a font.
std::unique_ptr<Font> CreateFontFromHandle(HFONT nativeFont);
/// A font of the record's height, face and style.
std::unique_ptr<Font> CreateFontFromLogFont(const LOGFONTW& logFont);
/// The same family, size and unit in another style; null for null.
std::unique_ptr<Font> CloneFontWithStyle(const Font* font, int32_t style);

/// Adds the font resources to the private faces; a missing one is left out.
void loadFontResources();
/// Does the same once a process.
void LoadPrivateFonts();

}  // namespace pdx
