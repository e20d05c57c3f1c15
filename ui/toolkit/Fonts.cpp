#include "ui/toolkit/Fonts.h"

#include <cmath>
#include <vector>

#include "config/Resources.h"
#include "platform/Log.h"
#include "platform/Once.h"
#include "platform/Text.h"
#include "ui/toolkit/Graphics.h"
#include "ui/toolkit/NativeHandles.h"

namespace pdx {

namespace flat = Gdiplus::DllExports;

namespace {

/// The private faces, made at the first use. They are never freed, because a thread that held GDI+'s locks may be gone
/// at the end of the process.
Gdiplus::GpFontCollection* privateFonts() {
    static Gdiplus::GpFontCollection* collection = nullptr;
    static constinit Once made;
    made.run([] { flat::GdipNewPrivateFontCollection(&collection); });
    return collection;
}

using FontFamily = Owned<Gdiplus::GpFontFamily*, flat::GdipDeleteFontFamily>;

std::wstring nameOf(const Gdiplus::GpFontFamily* family) {
    wchar_t name[LF_FACESIZE] = L"";
    flat::GdipGetFamilyName(family, name, LANG_NEUTRAL);
    return name;
}

/// A family of the collection by its name. Wine's GDI+ compares the name with full names of faces, so it misses a
/// family whose upright face is called "... Regular"; the list of families has it.
FontFamily findFamily(Gdiplus::GpFontCollection* collection, const std::wstring& name) {
    FontFamily found;
    if (flat::GdipCreateFontFamilyFromName(name.c_str(), collection, found.put()) == Gdiplus::Ok) return found;
    INT count = 0;
    flat::GdipGetFontCollectionFamilyCount(collection, &count);
    std::vector<Gdiplus::GpFontFamily*> families(static_cast<size_t>(count));
    flat::GdipGetFontCollectionFamilyList(collection, count, families.data(), &count);
    for (Gdiplus::GpFontFamily* family : families)
        if (!found && equalsIgnoreCase(nameOf(family), name)) flat::GdipCloneFontFamily(family, found.put());
    return found;
}

/// The system's default sans-serif face.
std::wstring systemFace() {
    const MemoryContext context(CreateCompatibleDC(nullptr));
    const NativeFont any(CreateFontW(-16, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_TT_ONLY_PRECIS,
                                     CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, VARIABLE_PITCH | FF_SWISS, L""));
    const SelectedObject selected(context, any.get());
    wchar_t face[LF_FACESIZE] = L"";
    GetTextFaceW(context.get(), LF_FACESIZE, face);
    return face;
}

/// The platform's generic family. Where GDI+ has no face for it (Wine without Microsoft's fonts), the system's default
/// face. Read once and never freed, like the private faces.
const Gdiplus::GpFontFamily* sansSerif() {
    static Gdiplus::GpFontFamily* family = nullptr;
    static constinit Once found;
    found.run([] {
        if (flat::GdipGetGenericFontFamilySansSerif(&family) == Gdiplus::Ok) return;
        Gdiplus::GpFontCollection* installed = nullptr;
        flat::GdipNewInstalledFontCollection(&installed);
        family = findFamily(installed, systemFace()).release();
    });
    return family;
}

/// Logs once a process, because fonts are made for every paint.
void logFailure(const std::wstring& family, Gdiplus::Status status) {
    static constinit Once logged;
    logged.run([&] {
        PDX_LOG(logWarning, "CreateFontByName", "Another face stands in for one of the library's: face=%ls; status=%d",
                family, int{status});
    });
}

}  // namespace

Font::Font(const Gdiplus::GpFontFamily* family, float size, int32_t style, Gdiplus::Unit unit) {
    collect(flat::GdipCreateFont(family, size, style, unit, put()));
}

float Font::getSize() const {
    float size = 0;
    call(flat::GdipGetFontSize, &size);
    return size;
}

int32_t Font::GetStyle() const {
    INT style = 0;
    call(flat::GdipGetFontStyle, &style);
    return style;
}

Gdiplus::Unit Font::getUnit() const {
    Gdiplus::Unit unit = Gdiplus::UnitPixel;
    call(flat::GdipGetFontUnit, &unit);
    return unit;
}

std::wstring Font::getFamilyName() const {
    FontFamily family;
    call(flat::GdipGetFamily, family.put());
    return nameOf(family.get());
}

float Font::getHeight(float dpi) const {
    float height = 0;
    call(flat::GdipGetFontHeightGivenDPI, dpi, &height);
    return height;
}

float Font::getAscent() const {
    FontFamily family;
    call(flat::GdipGetFamily, family.put());
    UINT16 ascent = 0, size = 1;
    collect(flat::GdipGetCellAscent(family.get(), GetStyle(), &ascent));
    collect(flat::GdipGetEmHeight(family.get(), GetStyle(), &size));
    return getSize() * static_cast<float>(ascent) / static_cast<float>(size);
}

std::optional<LOGFONTW> Font::getLogFont() const {
    const Graphics screen(HWND{nullptr});
    LOGFONTW logFont{};
    if (call(flat::GdipGetLogFontW, screen.native(), &logFont) != Gdiplus::Ok) return std::nullopt;
    return logFont;
}

std::unique_ptr<Font> CreateFontByName(const std::wstring& family, float emSizePixels, int32_t style) {
    const float size = std::fabs(emSizePixels);
    if (const FontFamily named = findFamily(privateFonts(), family)) {
        auto font = std::make_unique<Font>(named.get(), size, style, Gdiplus::UnitPixel);
        if (font->native()) return font;
        logFailure(family, font->lastStatus());
    } else if (family == textFace || family == pathFace) {
        logFailure(family, Gdiplus::FontFamilyNotFound);
    }
    return std::make_unique<Font>(sansSerif(), size, style, Gdiplus::UnitPixel);
}

std::unique_ptr<Font> CreateFontFromHandle(HFONT nativeFont) {
    LOGFONTW logFont{};
    if (GetObjectW(nativeFont, sizeof logFont, &logFont) != sizeof logFont) return nullptr;
    return CreateFontFromLogFont(logFont);
}

std::unique_ptr<Font> CreateFontFromLogFont(const LOGFONTW& logFont) {
    return CreateFontByName(
        logFont.lfFaceName, static_cast<float>(logFont.lfHeight),
        fontStyle(logFont.lfWeight, logFont.lfItalic != 0, logFont.lfUnderline != 0, logFont.lfStrikeOut != 0));
}

std::unique_ptr<Font> CloneFontWithStyle(const Font* font, int32_t style) {
    if (!font) return nullptr;
    FontFamily family;
    flat::GdipGetFamily(font->native(), family.put());
    return std::make_unique<Font>(family.get(), font->getSize(), style, font->getUnit());
}

void loadFontResources() {
    for (const uint16_t number : fontNumbers) {
        const auto file = loadResource({L"PDX_FONT", number}).asBytes();
        if (!file.empty()) flat::GdipPrivateAddMemoryFont(privateFonts(), file.data(), static_cast<INT>(file.size()));
    }
}

void LoadPrivateFonts() {
    // The collection is process-wide: a second dialog uses the faces that the first one loaded.
    static constinit Once loaded;
    loaded.run(loadFontResources);
}

}  // namespace pdx
