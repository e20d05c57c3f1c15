#include "ui/toolkit/Painting.h"

#include "ui/toolkit/rules/RoundedPath.h"
#include "ui/toolkit/rules/TextBounds.h"

namespace pdx {
namespace {

constexpr uint32_t textContrast = 4;
constexpr uint32_t bypassGdi = 0x80000000;

/// The platform's own format, got once; it is not ours to free.
const Gdiplus::GpStringFormat* typographicFormat() {
    static const Gdiplus::GpStringFormat* const format = [] {
        Gdiplus::GpStringFormat* found = nullptr;
        Gdiplus::DllExports::GdipStringFormatGetGenericTypographic(&found);
        return found;
    }();
    return format;
}

void addPart(Path& path, const PathLine& line) { path.AddLine(line.from, line.to); }
void addPart(Path& path, const PathArc& arc) { path.AddArc(arc.box, arc.start, arc.sweep); }

}  // namespace

void ApplyQuality(Graphics& graphics) {
    graphics.SetCompositingMode(Gdiplus::CompositingModeSourceOver);
    graphics.SetCompositingQuality(Gdiplus::CompositingQualityHighQuality);
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQuality);
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHighQuality);
    graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    graphics.SetTextContrast(textContrast);
    graphics.SetTextRenderingHint(Gdiplus::TextRenderingHintAntiAlias);
}

Path CreateRoundedPath(const Box& box, int32_t radius) {
    Path path;
    for (const PathPart& part : roundedPathParts(box, radius))
        std::visit([&path](const auto& piece) { addPart(path, piece); }, part);
    path.CloseFigure();
    return path;
}

StringFormat CreateTextFormat() {
    StringFormat format(typographicFormat());
    format.AddFlags(Gdiplus::StringFormatFlagsMeasureTrailingSpaces | bypassGdi);
    return format;
}

RectF DrawTextInRect(Graphics& graphics, std::wstring_view text, const Font* font, const RectF& layout,
                     const Brush* brush, Gdiplus::StringAlignment horizontalAlign) {
    StringFormat format = CreateTextFormat();
    format.SetAlignment(horizontalAlign);
    format.SetLineAlignment(Gdiplus::StringAlignmentCenter);
    const RectF measured = graphics.MeasureString(text, font, layout, &format);
    graphics.DrawString(text, font, layout, &format, brush);
    return alignedBounds(measured, layout, horizontalAlign, Gdiplus::StringAlignmentCenter);
}

}  // namespace pdx
