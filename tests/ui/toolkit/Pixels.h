// The pixels that a window draws.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

#include "ui/toolkit/Painting.h"
#include "ui/toolkit/Window.h"

namespace pdx::testing_support {

/// Whether every channel differs by at most three: implementations of GDI+ round blended colours differently.
inline ::testing::AssertionResult alike(Color actual, Color expected) {
    for (int shift = 0; shift < 32; shift += 8) {
        const int difference = static_cast<int>(actual >> shift & 0xFF) - static_cast<int>(expected >> shift & 0xFF);
        if (difference < -3 || difference > 3)
            return ::testing::AssertionFailure() << std::hex << actual << " instead of " << expected;
    }
    return ::testing::AssertionSuccess();
}

inline RectF measured(std::wstring_view text, float size, int32_t style) {
    return measureText(GetDesktopWindow(), text, CreateFontByName(textFace, size, style).get());
}

/// The picture that a window draws on a clear ground.
struct Drawn {
    explicit Drawn(Window& window) : size(window.GetClientSize()), bitmap(size) {
        Graphics graphics(bitmap);
        ApplyQuality(graphics);
        result = window.Draw(graphics);
        EXPECT_TRUE(result.handled);
        EXPECT_EQ(graphics.lastStatus(), Gdiplus::Ok);
    }
    [[nodiscard]] Color at(int32_t x, int32_t y) const { return bitmap.getPixel({x, y}); }
    /// The most opaque pixel of a part.
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
