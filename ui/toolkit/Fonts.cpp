#include "ui/toolkit/Fonts.h"

#include <cmath>

#include "ui/toolkit/Images.h"

namespace pdx {

namespace flat = Gdiplus::DllExports;

namespace {

/// The private faces, made at the first use. Never freed, as GDI+ is never shut down: at the end of the process the
/// thread that may have held its locks is gone.
Gdiplus::GpFontCollection* privateFonts() {
    static Gdiplus::GpFontCollection* const collection = [] {
        Gdiplus::GpFontCollection* made = nullptr;
        flat::GdipNewPrivateFontCollection(&made);
        return made;
    }();
    return collection;
}

/// The platform's own object, asked for once.
const Gdiplus::GpFontFamily* sansSerif() {
    static const Gdiplus::GpFontFamily* const family = [] {
        Gdiplus::GpFontFamily* found = nullptr;
        flat::GdipGetGenericFontFamilySansSerif(&found);
        return found;
    }();
    return family;
}

using FontFamily = UniqueHandle<GdiPlusTraits<Gdiplus::GpFontFamily, Gdiplus::DllExports::GdipDeleteFontFamily>>;

int32_t styleOf(const LOGFONTW& logFont) {
    return (logFont.lfWeight > FW_NORMAL ? fontBold : 0) | (logFont.lfItalic ? fontItalic : 0) |
           (logFont.lfUnderline ? fontUnderline : 0) | (logFont.lfStrikeOut ? fontStrikeout : 0);
}

}  // namespace

Font::Font(const Gdiplus::GpFontFamily* family, float size, int32_t style, Gdiplus::Unit unit) {
    collect(flat::GdipCreateFont(family, size, style, unit, put()));
}

float Font::GetSize() const {
    float size = 0;
    collect(flat::GdipGetFontSize(native(), &size));
    return size;
}

int32_t Font::GetStyle() const {
    INT style = 0;
    collect(flat::GdipGetFontStyle(native(), &style));
    return style;
}

Gdiplus::Unit Font::GetUnit() const {
    Gdiplus::Unit unit = Gdiplus::UnitPixel;
    collect(flat::GdipGetFontUnit(native(), &unit));
    return unit;
}

std::wstring Font::GetFamilyName() const {
    FontFamily family;
    collect(flat::GdipGetFamily(native(), family.put()));
    wchar_t name[LF_FACESIZE] = L"";
    collect(flat::GdipGetFamilyName(family.get(), name, LANG_NEUTRAL));
    return name;
}

float Font::GetHeight(float dpi) const {
    float height = 0;
    collect(flat::GdipGetFontHeightGivenDPI(native(), dpi, &height));
    return height;
}

std::optional<LOGFONTW> Font::GetLogFont() const {
    const Graphics screen(HWND{nullptr});
    LOGFONTW logFont{};
    if (collect(flat::GdipGetLogFontW(native(), screen.native(), &logFont)) != Gdiplus::Ok) return std::nullopt;
    return logFont;
}

std::unique_ptr<Font> CreateFontByName(const std::wstring& family, float emSizePixels, int32_t style) {
    const float size = std::fabs(emSizePixels);
    FontFamily named;
    flat::GdipCreateFontFamilyFromName(family.c_str(), privateFonts(), named.put());
    if (named) {
        auto font = std::make_unique<Font>(named.get(), size, style, Gdiplus::UnitPixel);
        if (font->native()) return font;
    }
    return std::make_unique<Font>(sansSerif(), size, style, Gdiplus::UnitPixel);
}

std::unique_ptr<Font> CreateFontFromHandle(HFONT nativeFont) {
    LOGFONTW logFont{};
    if (GetObjectW(nativeFont, sizeof logFont, &logFont) != sizeof logFont) return nullptr;
    return CreateFontFromLogFont(logFont);
}

std::unique_ptr<Font> CreateFontFromLogFont(const LOGFONTW& logFont) {
    return CreateFontByName(logFont.lfFaceName, static_cast<float>(logFont.lfHeight), styleOf(logFont));
}

std::unique_ptr<Font> CloneFontWithStyle(const Font* font, int32_t style) {
    if (!font) return nullptr;
    FontFamily family;
    flat::GdipGetFamily(font->native(), family.put());
    return std::make_unique<Font>(family.get(), font->GetSize(), style, font->GetUnit());
}

bool addPrivateFont(std::span<const std::byte> file) {
    return flat::GdipPrivateAddMemoryFont(privateFonts(), file.data(), static_cast<INT>(file.size())) == Gdiplus::Ok;
}

void LoadPrivateFonts() {
    // A second dialog of the same process finds the faces of the first.
    [[maybe_unused]] static const bool loaded = (loadFontResources(), true);
}

}  // namespace pdx
