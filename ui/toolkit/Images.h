// The pictures that the library carries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "ui/toolkit/Graphics.h"

namespace pdx {

/// Resource numbers of the pictures, type "PDX_IMAGE".
enum PictureNumber : uint16_t {
    backgroundPictureNumber = 104,  ///< JPEG, 1119 x 1119
    logoPictureNumber = 106,        ///< PNG with alpha, 120 x 120
    errorPictureNumber = 107,       ///< PNG with alpha, 150 x 150
    migrationPictureNumber = 108,   ///< PNG with alpha, 732 x 540
};

/// A picture from a copy of its file's bytes; null when GDI+ cannot decode them.
std::unique_ptr<Bitmap> decodePicture(std::span<const std::byte> file);
/// The picture resource with that number; null when it is missing or broken.
std::unique_ptr<Bitmap> loadImageResource(uint16_t id);
/// The same, under the dialog's name for it.
std::unique_ptr<Bitmap> LoadPicture(uint16_t resourceNumber);

/// A copy of that size, for a picture that is painted often: stretching takes many times longer than copying. Null when
/// GDI+ cannot make it.
std::unique_ptr<Bitmap> scalePicture(const Bitmap& picture, Size size);

}  // namespace pdx
