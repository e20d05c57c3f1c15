#include "ui/toolkit/Graphics.h"

#include <vector>

namespace pdx {

namespace flat = Gdiplus::DllExports;

namespace {

Gdiplus::GpBitmap* asBitmap(Gdiplus::GpImage* image) { return static_cast<Gdiplus::GpBitmap*>(image); }

Gdiplus::RectF toNative(const RectF& rect) { return {rect.x, rect.y, rect.width, rect.height}; }

/// The flat functions take a pointer and a length, and refuse a null pointer for an empty text.
const wchar_t* startOf(std::wstring_view text) { return text.empty() ? L"" : text.data(); }

}  // namespace

Bitmap::Bitmap(Size size) {
    make<Gdiplus::GpBitmap>(flat::GdipCreateBitmapFromScan0, size.width, size.height, 0, PixelFormat32bppARGB, nullptr);
}

Bitmap::Bitmap(IStream& stream) { make<Gdiplus::GpBitmap>(flat::GdipCreateBitmapFromStream, &stream); }

Size Bitmap::getSize() const {
    UINT width = 0, height = 0;
    call(flat::GdipGetImageWidth, &width);
    call(flat::GdipGetImageHeight, &height);
    return {static_cast<int32_t>(width), static_cast<int32_t>(height)};
}

Color Bitmap::getPixel(Point point) const {
    Gdiplus::ARGB color = 0;
    collect(flat::GdipBitmapGetPixel(asBitmap(native()), point.x, point.y, &color));
    return color;
}

Brush::Brush(Color color) { make<Gdiplus::GpSolidFill>(flat::GdipCreateSolidFill, color); }

Brush::Brush(const Box& box, Color left, Color right) {
    // The variant for integers gives half the slope under Wine.
    const Gdiplus::RectF rect(static_cast<float>(box.x), static_cast<float>(box.y), static_cast<float>(box.width),
                              static_cast<float>(box.height));
    make<Gdiplus::GpLineGradient>(flat::GdipCreateLineBrushFromRectWithAngle, &rect, left, right, 0.0f, FALSE,
                                  Gdiplus::WrapModeTile);
}

Pen::Pen(Color color, float width) { collect(flat::GdipCreatePen1(color, width, Gdiplus::UnitWorld, put())); }

Path::Path() { collect(flat::GdipCreatePath(Gdiplus::FillModeAlternate, put())); }

void Path::addLine(Point from, Point to) { call(flat::GdipAddPathLineI, from.x, from.y, to.x, to.y); }

void Path::addArc(const Box& box, int32_t startDegrees, int32_t sweepDegrees) {
    call(flat::GdipAddPathArcI, box.x, box.y, box.width, box.height, static_cast<float>(startDegrees),
         static_cast<float>(sweepDegrees));
}

void Path::closeFigure() { call(flat::GdipClosePathFigure); }

StringFormat::StringFormat(const Gdiplus::GpStringFormat* original) {
    collect(flat::GdipCloneStringFormat(original, put()));
}

void StringFormat::addFlags(uint32_t added) {
    INT flags = 0;
    call(flat::GdipGetStringFormatFlags, &flags);
    call(flat::GdipSetStringFormatFlags, static_cast<INT>(static_cast<uint32_t>(flags) | added));
}

Graphics::Graphics(HDC context) { collect(flat::GdipCreateFromHDC(context, put())); }

Graphics::Graphics(HWND window) { collect(flat::GdipCreateFromHWND(window, put())); }

Graphics::Graphics(const Bitmap& picture) { collect(flat::GdipGetImageGraphicsContext(picture.native(), put())); }

void Graphics::setClip(const Box& box) {
    limitTo(box);
    call(flat::GdipSetClipRectI, box.x, box.y, box.width, box.height, Gdiplus::CombineModeReplace);
}

void Graphics::setClip(const Path& path) { call(flat::GdipSetClipPath, path.native(), Gdiplus::CombineModeReplace); }

void Graphics::fillRectangle(const Brush& brush, const Box& box) {
    call(flat::GdipFillRectangleI, brush.native(), box.x, box.y, box.width, box.height);
}

void Graphics::fillPath(const Brush& brush, const Path& path) {
    call(flat::GdipFillPath, brush.native(), path.native());
}

void Graphics::drawPath(const Pen& pen, const Path& path) { call(flat::GdipDrawPath, pen.native(), path.native()); }

void Graphics::drawLine(const Pen& pen, Point from, Point to) {
    call(flat::GdipDrawLineI, pen.native(), from.x, from.y, to.x, to.y);
}

void Graphics::drawLines(const Pen& pen, std::span<const Point> points) {
    std::vector<Gdiplus::Point> natives;
    natives.reserve(points.size());
    for (const Point& point : points) natives.emplace_back(point.x, point.y);
    call(flat::GdipDrawLinesI, pen.native(), natives.data(), static_cast<INT>(natives.size()));
}

void Graphics::drawImage(const Bitmap& picture, const Box& box) {
    call(flat::GdipDrawImageRectI, picture.native(), box.x, box.y, box.width, box.height);
}

void Graphics::copyImage(const Bitmap& picture, const Box& box) {
    call(flat::GdipDrawImageRectRectI, picture.native(), box.x, box.y, box.width, box.height, box.x, box.y, box.width,
         box.height, Gdiplus::UnitPixel, nullptr, nullptr, nullptr);
}

void Graphics::drawString(std::wstring_view text, const Font* font, const RectF& layout, const StringFormat* format,
                          const Brush* brush) {
    const Gdiplus::RectF rect = toNative(layout);
    call(flat::GdipDrawString, startOf(text), static_cast<INT>(text.size()), nativeOf(font), &rect, nativeOf(format),
         nativeOf(brush));
}

RectF Graphics::measureString(std::wstring_view text, const Font* font, const RectF& layout,
                              const StringFormat* format) {
    const Gdiplus::RectF rect = toNative(layout);
    Gdiplus::RectF bounds(0, 0, 0, 0);
    call(flat::GdipMeasureString, startOf(text), static_cast<INT>(text.size()), nativeOf(font), &rect, nativeOf(format),
         &bounds, nullptr, nullptr);
    return {bounds.X, bounds.Y, bounds.Width, bounds.Height};
}

float Graphics::getDpiY() const {
    float dpi = 0;
    return collect(flat::GdipGetDpiY(native(), &dpi)) == Gdiplus::Ok ? dpi : 96.0f;
}

BorrowedContext::BorrowedContext(Graphics& lender) : graphics(lender) {
    if (flat::GdipGetDC(graphics.native(), &context) != Gdiplus::Ok) context = nullptr;
}

BorrowedContext::~BorrowedContext() {
    if (context) flat::GdipReleaseDC(graphics.native(), context);
}

}  // namespace pdx
