#include "ui/toolkit/Painting.h"

#include "platform/Log.h"
#include "platform/Once.h"
#include "ui/toolkit/rules/RoundedPath.h"
#include "ui/toolkit/rules/TextBounds.h"

namespace pdx {

namespace flat = Gdiplus::DllExports;

namespace {

constexpr uint32_t textContrast = 4;
constexpr uint32_t bypassGdi = 0x80000000;

/// The platform's generic format, read once; the platform owns it.
const Gdiplus::GpStringFormat* typographicFormat() {
    static Gdiplus::GpStringFormat* format = nullptr;
    static constinit Once read;
    read.run([] { flat::GdipStringFormatGetGenericTypographic(&format); });
    return format;
}

void addPart(Path& path, const PathLine& line) { path.addLine(line.from, line.to); }
void addPart(Path& path, const PathArc& arc) { path.addArc(arc.box, arc.start, arc.sweep); }

/// Whether GDI+ draws the line under a text. Wine's does not on pictures.
bool drawsFontLines() {
    static const bool draws = [] {
        constexpr float size = 24;
        constexpr int32_t side = 48, inLetter = 8;
        const Bitmap picture({side, side});
        Graphics graphics(picture);
        ApplyQuality(graphics);
        const auto font = textFont(size, fontUnderline);
        if (!font->native()) return true;
        const StringFormat format = CreateTextFormat();
        const Brush brush(palette::defaultText);
        graphics.drawString(L"H", font.get(), {}, &format, &brush);
        // The letter itself has no pixel below its baseline.
        for (auto y = static_cast<int32_t>(font->getAscent()) + 2; y < side; ++y)
            if (picture.getPixel({inLetter, y}) >> 24 != 0) return true;
        return false;
    }();
    return draws;
}

}  // namespace

void ApplyQuality(Graphics& graphics) {
    graphics.setCompositingMode(Gdiplus::CompositingModeSourceOver);
    graphics.call(flat::GdipSetCompositingQuality, Gdiplus::CompositingQualityHighQuality);
    graphics.call(flat::GdipSetInterpolationMode, Gdiplus::InterpolationModeHighQuality);
    graphics.call(flat::GdipSetPixelOffsetMode, Gdiplus::PixelOffsetModeHighQuality);
    graphics.call(flat::GdipSetSmoothingMode, Gdiplus::SmoothingModeAntiAlias);
    graphics.call(flat::GdipSetTextContrast, textContrast);
    graphics.call(flat::GdipSetTextRenderingHint, Gdiplus::TextRenderingHintAntiAlias);
}

void drawParent(Graphics& buffer, HWND parent, const Rect& place, const Box& part) {
    const BorrowedContext context(buffer);
    if (!context.get()) return;
    const int before = SaveDC(context.get());
    IntersectClipRect(context.get(), part.x, part.y, part.x + part.width, part.y + part.height);
    OffsetViewportOrgEx(context.get(), -place.left, -place.top, nullptr);
    SendMessageW(parent, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(context.get()), PRF_CLIENT);
    RestoreDC(context.get(), before);
}

Path CreateRoundedPath(const Box& box, int32_t radius) {
    Path path;
    for (const PathPart& part : roundedPathParts(box, radius))
        std::visit([&path](const auto& piece) { addPart(path, piece); }, part);
    path.closeFigure();
    return path;
}

StringFormat CreateTextFormat() {
    StringFormat format(typographicFormat());
    static constinit Once logged;
    if (!format.native())
        logged.run(
            [&] { PDX_LOG(logWarning, "CreateTextFormat", "No text format: status=%d", int{format.lastStatus()}); });
    format.addFlags(Gdiplus::StringFormatFlagsMeasureTrailingSpaces | bypassGdi);
    return format;
}

RectF measureText(HWND window, std::wstring_view text, const Font* font) {
    Graphics graphics(window);
    ApplyQuality(graphics);
    const StringFormat format = CreateTextFormat();
    return graphics.measureString(text, font, {}, &format);
}

void drawFontLines(Graphics& graphics, const Font& font, const RectF& text, const Brush& brush) {
    const int32_t style = font.GetStyle();
    if ((style & (fontUnderline | fontStrikeout)) == 0 || drawsFontLines()) return;
    for (const auto& [bit, line] : {std::pair(fontUnderline, FontLine::under), {fontStrikeout, FontLine::through}})
        if (style & bit) graphics.fillRectangle(brush, fontLineBox(line, text, font.getAscent(), font.getSize()));
}

RectF DrawTextInRect(Graphics& graphics, std::wstring_view text, const Font* font, const RectF& layout,
                     const Brush* brush, Gdiplus::StringAlignment horizontalAlign) {
    StringFormat format = CreateTextFormat();
    format.call(flat::GdipSetStringFormatAlign, horizontalAlign);
    format.call(flat::GdipSetStringFormatLineAlign, Gdiplus::StringAlignmentCenter);
    const RectF measured = graphics.measureString(text, font, layout, &format);
    graphics.drawString(text, font, layout, &format, brush);
    const RectF drawn = alignedBounds(measured, layout, horizontalAlign, Gdiplus::StringAlignmentCenter);
    if (font && brush) drawFontLines(graphics, *font, drawn, *brush);
    return drawn;
}

}  // namespace pdx
