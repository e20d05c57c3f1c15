// What a window draws, and what a test looks for in it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

#include "ui/toolkit/Painting.h"
#include "ui/toolkit/Window.h"

namespace pdx::testing_support {

/// Every channel within three steps: rounding of blended colours differs between makers of GDI+.
inline ::testing::AssertionResult alike(Color actual, Color expected) {
    for (int shift = 0; shift < 32; shift += 8) {
        const int difference = static_cast<int>(actual >> shift & 0xFF) - static_cast<int>(expected >> shift & 0xFF);
        if (difference < -3 || difference > 3)
            return ::testing::AssertionFailure() << std::hex << actual << " instead of " << expected;
    }
    return ::testing::AssertionSuccess();
}

inline RectF measured(std::wstring_view text, float size, int32_t style) {
    const auto font = CreateFontByName(textFace, size, style);
    Graphics graphics(GetDesktopWindow());
    ApplyQuality(graphics);
    const StringFormat format = CreateTextFormat();
    return graphics.measureString(text, font.get(), {}, &format);
}

/// What a window draws on a clear ground.
struct Drawn {
    explicit Drawn(Window& window) : size(window.GetClientSize()), bitmap(size) {
        Graphics graphics(bitmap);
        ApplyQuality(graphics);
        result = window.Draw(graphics);
        EXPECT_TRUE(result.handled);
        EXPECT_EQ(graphics.lastStatus(), Gdiplus::Ok);
    }
    [[nodiscard]] Color at(int32_t x, int32_t y) const { return bitmap.getPixel({x, y}); }
    /// The pixel that covers most in a part of it.
    [[nodiscard]] Color strongest(const RectF& part) const {
        Color found = 0;
        const int32_t right = std::min(size.width, static_cast<int32_t>(part.x + part.width));
        const int32_t bottom = std::min(size.height, static_cast<int32_t>(part.y + part.height));
        for (auto y = static_cast<int32_t>(part.y); y < bottom; ++y)
            for (auto x = static_cast<int32_t>(part.x); x < right; ++x)
                if (at(x, y) >> 24 > found >> 24) found = at(x, y);
        return found;
    }
    [[nodiscard]] Color strongest() const {
        return strongest({0, 0, static_cast<float>(size.width), static_cast<float>(size.height)});
    }

    Size size;
    Bitmap bitmap;
    MessageResult result;
};

}  // namespace pdx::testing_support
