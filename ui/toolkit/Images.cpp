#include "ui/toolkit/Images.h"

#include "config/Resources.h"
#include "platform/ComPtr.h"
#include "ui/toolkit/Painting.h"

namespace pdx {

std::unique_ptr<Bitmap> decodePicture(std::span<const std::byte> file) {
    if (file.empty()) return nullptr;
    // GDI+ reads pictures from streams only.
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

std::unique_ptr<Bitmap> ScalePicture(const Bitmap& picture, Size size) {
    auto scaled = std::make_unique<Bitmap>(size);
    Graphics graphics(*scaled);
    ApplyQuality(graphics);
    graphics.SetCompositingMode(Gdiplus::CompositingModeSourceCopy);
    graphics.DrawImage(picture, {0, 0, size.width, size.height});
    return graphics.lastStatus() == Gdiplus::Ok ? std::move(scaled) : nullptr;
}

}  // namespace pdx
