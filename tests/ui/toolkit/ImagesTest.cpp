#include "ui/toolkit/Images.h"

#include <gtest/gtest.h>

#include <vector>

namespace pdx {
namespace {

std::span<const std::byte> asFile(std::span<const unsigned char> bytes) { return std::as_bytes(bytes); }

/// A PNG of 2 x 1 pixels with alpha: half-clear red, opaque blue.
constexpr unsigned char twoPixels[] = {
    0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48, 0x44, 0x52, 0x00, 0x00, 0x00,
    0x02, 0x00, 0x00, 0x00, 0x01, 0x08, 0x06, 0x00, 0x00, 0x00, 0xf4, 0x22, 0x7f, 0x8a, 0x00, 0x00, 0x00, 0x11, 0x49,
    0x44, 0x41, 0x54, 0x78, 0xda, 0x63, 0xf8, 0xcf, 0xc0, 0xd0, 0xc0, 0xc0, 0xf0, 0xff, 0x3f, 0x00, 0x0d, 0x7e, 0x03,
    0x7e, 0x97, 0xf1, 0x88, 0x3f, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};

TEST(Pictures, AreDecodedFromTheirFile) {
    const auto picture = decodePicture(asFile(twoPixels));
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->GetSize(), (Size{2, 1}));
    EXPECT_EQ(picture->GetPixel({0, 0}), 0x80FF0000u);
    EXPECT_EQ(picture->GetPixel({1, 0}), 0xFF0000FFu);
}

TEST(Pictures, AreNullWhenTheyAreMissingOrBroken) {
    EXPECT_EQ(loadImageResource(105), nullptr);
    EXPECT_EQ(LoadPicture(9999), nullptr);
    EXPECT_EQ(decodePicture({}), nullptr);
    const std::vector<std::byte> junk(100, std::byte{0x20});
    EXPECT_EQ(decodePicture(junk), nullptr);
    EXPECT_EQ(decodePicture(asFile(twoPixels).first(20)), nullptr) << "cut off";
}

TEST(Pictures, KeepTheirColorsInAnotherSize) {
    const auto background = LoadPicture(backgroundPictureNumber);
    ASSERT_NE(background, nullptr);
    const auto scaled = ScalePicture(*background, {480, 450});
    ASSERT_NE(scaled, nullptr);
    EXPECT_EQ(scaled->GetSize(), (Size{480, 450}));
    for (const Point corner : {Point{0, 0}, {479, 0}, {0, 449}, {479, 449}, {240, 225}})
        EXPECT_EQ(scaled->GetPixel(corner) >> 24, 0xFFu) << corner.x << " " << corner.y << ": nothing shines through";
    const auto brightness = [](Color color) { return (color >> 16 & 0xFF) + (color >> 8 & 0xFF) + (color & 0xFF); };
    EXPECT_NEAR(brightness(scaled->GetPixel({240, 100})), brightness(background->GetPixel({559, 248})), 24);
    EXPECT_EQ(ScalePicture(*background, {0, 5}), nullptr);
}

}  // namespace
}  // namespace pdx
