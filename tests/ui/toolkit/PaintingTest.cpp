#include "ui/toolkit/Painting.h"

#include <gtest/gtest.h>

#include "harness/programs/Snapshot.h"
#include "tests/ui/toolkit/Pixels.h"
#include "tests/ui/toolkit/TestWindows.h"

namespace pdx {
namespace {

namespace flat = Gdiplus::DllExports;
using namespace testing_support;

constexpr Color red = 0xFFFF0000, blue = 0xFF0000FF, white = 0xFFFFFFFF;

/// The child of a visible dialog that is red to the left of x = 100 and blue to the right.
class Painting : public ::testing::Test {
  protected:
    void SetUp() override {
        dialog.painter = [](Graphics& graphics) {
            graphics.fillRectangle(Brush(red), {0, 0, 100, 500});
            graphics.fillRectangle(Brush(blue), {100, 0, 500, 500});
        };
        dialog.openEmpty();
    }
    static HWND childAt(const Box& box, const Window& parent) {
        return makeChild(parent.getHandle(), L"STATIC", WS_VISIBLE, box);
    }

    TestDialog dialog;
};

TEST_F(Painting, AChildOfAChildShowsTheGroundOfTheDialog) {
    TestControl child(childAt({70, 40, 60, 40}, dialog));
    child.painter = [](Graphics& graphics) { graphics.fillRectangle(Brush(white), {0, 0, 100, 100}); };
    TestControl inner(childAt({20, 10, 30, 20}, child));
    inner.painter = [](Graphics& graphics) { graphics.fillRectangle(Brush(0x80000000), {0, 0, 5, 100}); };
    const Snapshot picture(dialog.getHandle());
    EXPECT_TRUE(alike(picture.getPixel({80, 45}), white));
    // The top window draws the ground, so the white of the parent between them does not show.
    EXPECT_TRUE(alike(picture.getPixel({91, 55}), 0xFF800000));
    EXPECT_TRUE(alike(picture.getPixel({97, 55}), red));
    EXPECT_TRUE(alike(picture.getPixel({105, 55}), blue));
}

TEST_F(Painting, DrawingIsClippedToThePaintRectangleAndOnePixelMore) {
    TestControl child(childAt({0, 0, 60, 40}, dialog));
    Box clip;
    child.painter = [&](Graphics& graphics) {
        Gdiplus::Rect bounds;
        flat::GdipGetClipBoundsI(graphics.native(), &bounds);
        clip = {bounds.X, bounds.Y, bounds.Width, bounds.Height};
    };
    paint(child);
    EXPECT_EQ(clip, (Box{0, 0, 61, 41}));
    const Rect part = {10, 5, 20, 12};
    child.Invalidate(&part);
    paint(child);
    EXPECT_EQ(clip, (Box{10, 5, 11, 8}));
    SendMessageW(child.getHandle(), WM_PAINT, 0, 0);
    EXPECT_EQ(clip, (Box{0, 0, 1, 1})) << "an empty paint rectangle";
}

}  // namespace
}  // namespace pdx
