// What is drawn with: surfaces, brushes, pens, paths, text formats, pictures.
#pragma once

#include <optional>
#include <string_view>

#include "ui/toolkit/Fonts.h"
#include "ui/toolkit/GdiPlus.h"
#include "ui/toolkit/rules/Geometry.h"
#include "ui/toolkit/rules/Palette.h"

namespace pdx {

/// A picture in memory: decoded from a stream, or an empty one to draw on.
class Bitmap : public GdiPlusObject<Gdiplus::GpImage, Gdiplus::DllExports::GdipDisposeImage> {
  public:
    /// 32 bits a pixel with alpha, clear at first. An empty size makes no bitmap.
    explicit Bitmap(Size size);
    /// Decodes any format that GDI+ knows; it keeps the stream for as long as it lives.
    explicit Bitmap(IStream& stream);
    [[nodiscard]] Size GetSize() const;
    [[nodiscard]] Color GetPixel(Point point) const;
};

class Brush : public GdiPlusObject<Gdiplus::GpBrush, Gdiplus::DllExports::GdipDeleteBrush> {
  public:
    /// One colour.
    explicit Brush(Color color);
    /// From left to right over the box, and repeated outside of it.
    Brush(const Box& box, Color left, Color right);
};

class Pen : public GdiPlusObject<Gdiplus::GpPen, Gdiplus::DllExports::GdipDeletePen> {
  public:
    Pen(Color color, float width);
};

class Path : public GdiPlusObject<Gdiplus::GpPath, Gdiplus::DllExports::GdipDeletePath> {
  public:
    Path();
    void AddLine(Point from, Point to);
    void AddArc(const Box& box, int32_t startDegrees, int32_t sweepDegrees);
    void CloseFigure();
};

class StringFormat : public GdiPlusObject<Gdiplus::GpStringFormat, Gdiplus::DllExports::GdipDeleteStringFormat> {
  public:
    /// A copy of another format, which is not owned.
    explicit StringFormat(const Gdiplus::GpStringFormat* original);
    void AddFlags(uint32_t flags);
    void SetAlignment(Gdiplus::StringAlignment alignment);
    void SetLineAlignment(Gdiplus::StringAlignment alignment);
    void SetTrimming(Gdiplus::StringTrimming trimming);
    [[nodiscard]] uint32_t GetFlags() const;
};

/// A surface to draw on. It does not own what it draws on, which has to live longer.
class Graphics : public GdiPlusObject<Gdiplus::GpGraphics, Gdiplus::DllExports::GdipDeleteGraphics> {
  public:
    explicit Graphics(HDC context);
    explicit Graphics(HWND window);
    explicit Graphics(const Bitmap& picture);

    void SetCompositingMode(Gdiplus::CompositingMode mode);
    void SetCompositingQuality(Gdiplus::CompositingQuality quality);
    void SetInterpolationMode(Gdiplus::InterpolationMode mode);
    void SetPixelOffsetMode(Gdiplus::PixelOffsetMode mode);
    void SetSmoothingMode(Gdiplus::SmoothingMode mode);
    void SetTextContrast(uint32_t contrast);
    void SetTextRenderingHint(Gdiplus::TextRenderingHint hint);
    /// Both replace the clip that was set before; a box is also what LimitTo notes.
    void SetClip(const Box& box);
    void SetClip(const Path& path);

    /// Notes that nothing shows outside of the box, which whoever draws may use; it clips nothing.
    void LimitTo(const Box& box) { limit = box; }
    /// The part of a box that can show.
    [[nodiscard]] Box Visible(const Box& box) const { return limit ? intersection(box, *limit) : box; }

    void FillRectangle(const Brush& brush, const Box& box);
    void FillPath(const Brush& brush, const Path& path);
    void DrawPath(const Pen& pen, const Path& path);
    void DrawLine(const Pen& pen, Point from, Point to);
    /// Through all points, in order, joined.
    void DrawLines(const Pen& pen, std::span<const Point> points);
    /// Stretched to the box.
    void DrawImage(const Bitmap& picture, const Box& box);
    /// The same box of the picture to the same place.
    void CopyImage(const Bitmap& picture, const Box& box);

    /// A null font, brush or format is passed on as null: nothing is drawn, or measured without a format.
    void DrawString(std::wstring_view text, const Font* font, const RectF& layout, const StringFormat* format,
                    const Brush* brush);
    /// The rectangle that the text takes in the layout rectangle; all zero when it cannot be measured.
    RectF MeasureString(std::wstring_view text, const Font* font, const RectF& layout, const StringFormat* format);
    /// Vertical dots per inch, 96 when they cannot be had.
    [[nodiscard]] float GetDpiY() const;

  private:
    std::optional<Box> limit;
};

/// The device context of a surface, given back at the end; nothing may be drawn on the surface meanwhile.
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
