// The pictures that the library carries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "ui/toolkit/Graphics.h"

namespace pdx {

/// Numbers of the pictures, type "PDX_IMAGE".
enum PictureNumber : uint16_t {
    backgroundPictureNumber = 104,  ///< JPEG, 1119 x 1119
    logoPictureNumber = 106,        ///< PNG with alpha, 120 x 120
    errorPictureNumber = 107,       ///< PNG with alpha, 150 x 150
    migrationPictureNumber = 108,   ///< PNG with alpha, 732 x 540
};

/// A picture from the bytes of its file, which are copied; null when they are none that GDI+ can decode.
std::unique_ptr<Bitmap> decodePicture(std::span<const std::byte> file);
/// The picture with that number; null when it is missing or broken.
std::unique_ptr<Bitmap> loadImageResource(uint16_t id);
/// The same, by the name that the dialog uses.
std::unique_ptr<Bitmap> LoadPicture(uint16_t resourceNumber);

/// A copy of that size for a picture that is painted over and over: stretching takes many times longer than drawing it
/// as it is. Null when there is no memory for it.
std::unique_ptr<Bitmap> ScalePicture(const Bitmap& picture, Size size);

}  // namespace pdx
