#include "ui/toolkit/Images.h"

#include <gtest/gtest.h>

#include <vector>

#include "ui/toolkit/Painting.h"

namespace pdx {
namespace {

std::span<const std::byte> asFile(std::span<const unsigned char> bytes) { return std::as_bytes(bytes); }

/// A PNG of 2 x 1 pixels with alpha: half-clear red, opaque blue.
constexpr unsigned char twoPixels[] = {
    0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48, 0x44, 0x52, 0x00, 0x00, 0x00,
    0x02, 0x00, 0x00, 0x00, 0x01, 0x08, 0x06, 0x00, 0x00, 0x00, 0xf4, 0x22, 0x7f, 0x8a, 0x00, 0x00, 0x00, 0x11, 0x49,
    0x44, 0x41, 0x54, 0x78, 0xda, 0x63, 0xf8, 0xcf, 0xc0, 0xd0, 0xc0, 0xc0, 0xf0, 0xff, 0x3f, 0x00, 0x0d, 0x7e, 0x03,
    0x7e, 0x97, 0xf1, 0x88, 0x3f, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};

TEST(Pictures, AreDecodedWithTheirAlpha) {
    const auto picture = decodePicture(asFile(twoPixels));
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->getSize(), (Size{2, 1}));
    EXPECT_EQ(picture->getPixel({0, 0}), 0x80FF0000u);
    EXPECT_EQ(picture->getPixel({1, 0}), 0xFF0000FFu);
}

TEST(Pictures, AreNullWhenTheyAreMissingOrBroken) {
    EXPECT_EQ(loadImageResource(105), nullptr);
    EXPECT_EQ(LoadPicture(9999), nullptr);
    EXPECT_EQ(decodePicture({}), nullptr);
    const std::vector<std::byte> junk(100, std::byte{0x20});
    EXPECT_EQ(decodePicture(junk), nullptr);
    EXPECT_EQ(decodePicture(asFile(twoPixels).first(20)), nullptr) << "cut off";
}

TEST(Pictures, ScaledPicturesResembleStretchedOnes) {
    const auto background = LoadPicture(backgroundPictureNumber);
    ASSERT_NE(background, nullptr);
    const Size size = {480, 450};
    const auto scaled = scalePicture(*background, size);
    ASSERT_NE(scaled, nullptr);
    ASSERT_EQ(scaled->getSize(), size);
    const Bitmap stretched(size);
    Graphics graphics(stretched);
    ApplyQuality(graphics);
    graphics.drawImage(*background, {0, 0, size.width, size.height});
    // Wine's stretching samples four of the five or more pixels under each target pixel, two thirds of a pixel off
    // their middle. It differs by up to 14 levels, at the edges in the picture.
    for (int32_t y = 0; y < size.height; ++y)
        for (int32_t x = 0; x < size.width; ++x) {
            const Color one = scaled->getPixel({x, y}), other = stretched.getPixel({x, y});
            ASSERT_EQ(one >> 24, 0xFFu) << "opaque";
            for (const int shift : {0, 8, 16})
                ASSERT_NEAR(static_cast<int>(one >> shift & 0xFF), static_cast<int>(other >> shift & 0xFF), 16);
        }
    EXPECT_EQ(scalePicture(*background, {0, 5}), nullptr);
    EXPECT_EQ(scalePicture(*background, {1200, 5})->getSize(), (Size{1200, 5})) << "larger";
}

}  // namespace
}  // namespace pdx
