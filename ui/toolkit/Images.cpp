#include "ui/toolkit/Images.h"

#include "config/Resources.h"
#include "platform/ComPtr.h"
#include "ui/toolkit/Painting.h"
#include "ui/toolkit/rules/AreaScale.h"

namespace pdx {

namespace flat = Gdiplus::DllExports;

namespace {

/// The pixels of a picture in place, or a copy in another format. The picture must not be used meanwhile.
class LockedPixels {
  public:
    LockedPixels(const Bitmap& picture, Gdiplus::ImageLockMode mode, Gdiplus::PixelFormat format)
        : bitmap(static_cast<Gdiplus::GpBitmap*>(picture.native())) {
        locked = flat::GdipBitmapLockBits(bitmap, nullptr, mode, format, &data) == Gdiplus::Ok;
    }
    ~LockedPixels() {
        if (locked) flat::GdipBitmapUnlockBits(bitmap, &data);
    }
    LockedPixels(const LockedPixels&) = delete;
    LockedPixels& operator=(const LockedPixels&) = delete;
    explicit operator bool() const { return locked; }
    template <typename Byte>
    [[nodiscard]] PixelRows<Byte> rows() const {
        const Size size = {static_cast<int32_t>(data.Width), static_cast<int32_t>(data.Height)};
        return {static_cast<Byte*>(data.Scan0), data.Stride, size};
    }

  private:
    Gdiplus::GpBitmap* bitmap;
    Gdiplus::BitmapData data{};
    bool locked;
};

bool isOpaque(const Bitmap& picture) {
    Gdiplus::PixelFormat format = 0;
    flat::GdipGetImagePixelFormat(picture.native(), &format);
    return (format & PixelFormatAlpha) == 0;
}

/// Scales by area without GDI+, which takes several times as long; false when the two pictures do not allow it.
bool makeSmaller(const Bitmap& picture, const Bitmap& smaller) {
    if (!isOpaque(picture) || !canScaleByArea(picture.getSize(), smaller.getSize())) return false;
    const LockedPixels from(picture, Gdiplus::ImageLockModeRead, PixelFormat24bppRGB);
    const LockedPixels to(smaller, Gdiplus::ImageLockModeWrite, PixelFormat32bppARGB);
    if (!from || !to) return false;
    scaleByArea(from.rows<const uint8_t>(), to.rows<uint8_t>());
    return true;
}

}  // namespace

std::unique_ptr<Bitmap> decodePicture(std::span<const std::byte> file) {
    if (file.empty()) return nullptr;
    // GDI+ decodes pictures from streams only.
    ComPtr<IStream> stream;
    if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, stream.put()))) return nullptr;
    ULONG written = 0;
    if (FAILED(stream->Write(file.data(), static_cast<ULONG>(file.size()), &written))) return nullptr;
    if (FAILED(stream->Seek({}, STREAM_SEEK_SET, nullptr))) return nullptr;
    auto picture = std::make_unique<Bitmap>(*stream.get());
    return picture->native() ? std::move(picture) : nullptr;
}

std::unique_ptr<Bitmap> loadImageResource(uint16_t id) {
    return decodePicture(loadResource({L"PDX_IMAGE", id}).asBytes());
}

std::unique_ptr<Bitmap> LoadPicture(uint16_t resourceNumber) { return loadImageResource(resourceNumber); }

std::unique_ptr<Bitmap> scalePicture(const Bitmap& picture, Size size) {
    auto scaled = std::make_unique<Bitmap>(size);
    if (scaled->native() && makeSmaller(picture, *scaled)) return scaled;
    Graphics graphics(*scaled);
    ApplyQuality(graphics);
    graphics.setCompositingMode(Gdiplus::CompositingModeSourceCopy);
    graphics.drawImage(picture, {0, 0, size.width, size.height});
    return graphics.lastStatus() == Gdiplus::Ok ? std::move(scaled) : nullptr;
}

}  // namespace pdx
