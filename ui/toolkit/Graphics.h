// The GDI+ objects of the toolkit: surfaces, brushes, pens, paths, text formats, pictures. Lengths are pixels.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "ui/toolkit/Fonts.h"
#include "ui/toolkit/GdiPlus.h"
#include "ui/toolkit/rules/Geometry.h"
#include "ui/toolkit/rules/Palette.h"

namespace pdx {

/// A picture in memory, decoded from a stream or empty to draw on.
class Bitmap : public GdiPlusObject<Gdiplus::GpImage, Gdiplus::DllExports::GdipDisposeImage> {
  public:
    /// 32 bits a pixel with alpha, initially clear. An empty size makes no bitmap.
    explicit Bitmap(Size size);
    /// Decodes any format that GDI+ knows. The bitmap keeps the stream.
    explicit Bitmap(IStream& stream);
    [[nodiscard]] Size getSize() const;
    [[nodiscard]] Color getPixel(Point point) const;
};

class Brush : public GdiPlusObject<Gdiplus::GpBrush, Gdiplus::DllExports::GdipDeleteBrush> {
  public:
    /// One colour.
    explicit Brush(Color color);
    /// A gradient from left to right over the box, repeated outside of it.
    Brush(const Box& box, Color left, Color right);
};

class Pen : public GdiPlusObject<Gdiplus::GpPen, Gdiplus::DllExports::GdipDeletePen> {
  public:
    Pen(Color color, float width);
};

class Path : public GdiPlusObject<Gdiplus::GpPath, Gdiplus::DllExports::GdipDeletePath> {
  public:
    Path();
    void addLine(Point from, Point to);
    void addArc(const Box& box, int32_t startDegrees, int32_t sweepDegrees);
    void closeFigure();
};

class StringFormat : public GdiPlusObject<Gdiplus::GpStringFormat, Gdiplus::DllExports::GdipDeleteStringFormat> {
  public:
    /// Copies a format.
    explicit StringFormat(const Gdiplus::GpStringFormat* original);
    void addFlags(uint32_t added);
};

/// A surface to draw on. The device context, window or picture under it must outlive it.
class Graphics : public GdiPlusObject<Gdiplus::GpGraphics, Gdiplus::DllExports::GdipDeleteGraphics> {
  public:
    explicit Graphics(HDC context);
    explicit Graphics(HWND window);
    explicit Graphics(const Bitmap& picture);

    void setCompositingMode(Gdiplus::CompositingMode mode) { call(Gdiplus::DllExports::GdipSetCompositingMode, mode); }
    /// Both replace the earlier clip; a box also becomes the limit.
    void setClip(const Box& box);
    void setClip(const Path& path);

    /// Sets the limit: nothing outside of the box shows, so drawing there can be left out. It does not clip.
    void limitTo(const Box& box) { limit = box; }
    /// The part of a box within the limit.
    [[nodiscard]] Box visible(const Box& box) const { return limit ? intersection(box, *limit) : box; }

    void fillRectangle(const Brush& brush, const Box& box);
    void fillPath(const Brush& brush, const Path& path);
    void drawPath(const Pen& pen, const Path& path);
    void drawLine(const Pen& pen, Point from, Point to);
    /// A joined line through all points.
    void drawLines(const Pen& pen, std::span<const Point> points);
    /// Draws the picture, stretched to the box.
    void drawImage(const Bitmap& picture, const Box& box);
    /// Copies a box of the picture to the same place of the surface.
    void copyImage(const Bitmap& picture, const Box& box);

    /// Draws nothing with a null font or brush. A null format is GDI+'s default.
    void drawString(std::wstring_view text, const Font* font, const RectF& layout, const StringFormat* format,
                    const Brush* brush);
    /// The rectangle that the text takes in the layout rectangle; all zero when GDI+ cannot measure it.
    RectF measureString(std::wstring_view text, const Font* font, const RectF& layout, const StringFormat* format);
    /// Vertical dots per inch; 96 on failure.
    [[nodiscard]] float getDpiY() const;

  private:
    std::optional<Box> limit;
};

/// The device context of a surface, released by the destructor; null on failure. The surface must not be drawn on
/// meanwhile.
class BorrowedContext {
  public:
    explicit BorrowedContext(Graphics& lender);
    ~BorrowedContext();
    BorrowedContext(const BorrowedContext&) = delete;
    BorrowedContext& operator=(const BorrowedContext&) = delete;
    [[nodiscard]] HDC get() const noexcept { return context; }

  private:
    Graphics& graphics;
    HDC context = nullptr;
};

}  // namespace pdx
