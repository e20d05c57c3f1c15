// What a window shows, as a picture.
#pragma once

#include <string>

#include "ui/toolkit/Graphics.h"

namespace pdx {

/// A picture of a window's client area with all its children, painted anew for it. The window has to be visible and
/// to belong to this thread.
class Snapshot : public GdiPlusObject<Gdiplus::GpImage, Gdiplus::DllExports::GdipDisposeImage> {
  public:
    explicit Snapshot(HWND window);
    [[nodiscard]] Size getSize() const { return size; }
    /// Opaque; 0 outside of the picture.
    [[nodiscard]] Color getPixel(Point point) const;
    /// Whether the file could be written.
    bool savePng(const std::wstring& path) const;

  private:
    Size size;
};

}  // namespace pdx
