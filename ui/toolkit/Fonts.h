// The faces of the interface: private fonts from memory, and fonts by name, by native handle or by record. Sizes are
// pixels and never scaled.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "ui/toolkit/GdiPlus.h"

namespace pdx {

/// The face of all text, and the face of the install path.
inline constexpr wchar_t textFace[] = L"TT Commons";
inline constexpr wchar_t pathFace[] = L"Apercu Mono Pro";

/// Numbers of the fonts that the library carries, type "PDX_FONT".
inline constexpr uint16_t fontNumbers[] = {102, 103};

/// Bits of a font's style.
enum FontStyle : int32_t {
    fontRegular = 0,
    fontBold = 1,
    fontItalic = 2,
    fontUnderline = 4,
    fontStrikeout = 8,
};

class Font : public GdiPlusObject<Gdiplus::GpFont, Gdiplus::DllExports::GdipDeleteFont> {
  public:
    /// The family is not owned.
    Font(const Gdiplus::GpFontFamily* family, float size, int32_t style, Gdiplus::Unit unit);
    [[nodiscard]] float GetSize() const;
    [[nodiscard]] int32_t GetStyle() const;
    [[nodiscard]] Gdiplus::Unit GetUnit() const;
    [[nodiscard]] std::wstring GetFamilyName() const;
    /// Line height in pixels at that many dots per inch.
    [[nodiscard]] float GetHeight(float dpi) const;
    /// From the top of a line to what its letters stand on, in the unit of the size.
    [[nodiscard]] float GetAscent() const;
    /// The font as a record for native fonts; nothing when there is no font.
    [[nodiscard]] std::optional<LOGFONTW> GetLogFont() const;
};

/// A font of a private face, in pixels whatever the sign; where there is no such face, or no such style of it, the
/// platform's sans-serif face stands in. That is no failure; the first time that it happens to a face which the library
/// carries is logged.
std::unique_ptr<Font> CreateFontByName(const std::wstring& family, float emSizePixels, int32_t style);
inline std::unique_ptr<Font> textFont(float emSizePixels, int32_t style) {
    return CreateFontByName(textFace, emSizePixels, style);
}
/// Null when the handle is no font.
std::unique_ptr<Font> CreateFontFromHandle(HFONT nativeFont);
/// Height, face, and the style: bold above a weight of 400, italic, underline, strikeout.
std::unique_ptr<Font> CreateFontFromLogFont(const LOGFONTW& logFont);
/// The same family, size and unit in another style; null for null.
std::unique_ptr<Font> CloneFontWithStyle(const Font* font, int32_t style);

/// Adds a TrueType or OpenType font to the private faces. The memory stays the caller's and has to stay in place.
bool addPrivateFont(std::span<const std::byte> file);
/// Adds every font that the library carries to the private faces; a missing one is left out.
void loadFontResources();
/// The same, once a process.
void LoadPrivateFonts();

}  // namespace pdx
