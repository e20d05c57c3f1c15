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

/// A visible dialog, red to the left of x = 100 and blue to the right, with one child.
class SeeThrough : public ::testing::Test {
  protected:
    void SetUp() override {
        dialog.painter = [](Graphics& graphics) {
            graphics.FillRectangle(Brush(red), {0, 0, 100, 500});
            graphics.FillRectangle(Brush(blue), {100, 0, 500, 500});
        };
        ASSERT_NE(dialog.Create({}), nullptr);
        for (const int32_t id : {11, 12, 13}) ShowWindow(dialog.GetItem(id), SW_HIDE);
        dialog.SetPosition({50, 50, 300, 200}, SWP_NOZORDER | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    }
    static CreateParams childAt(const Box& box, HWND parent) {
        return {.style = WS_CHILD | WS_VISIBLE,
                .x = box.x,
                .y = box.y,
                .width = box.width,
                .height = box.height,
                .parent = parent};
    }

    TestDialog dialog;
    TestControl child;
};

TEST_F(SeeThrough, AChildOfAChildShowsTheDialogToo) {
    TestControl inner;
    child.painter = [](Graphics& graphics) { graphics.FillRectangle(Brush(white), {0, 0, 100, 100}); };
    child.Create(childAt({70, 40, 60, 40}, dialog.GetHandle()));
    inner.painter = [](Graphics& graphics) { graphics.FillRectangle(Brush(0x80000000), {0, 0, 5, 100}); };
    inner.Create(childAt({20, 10, 30, 20}, child.GetHandle()));
    const Snapshot picture(dialog.GetHandle());
    EXPECT_TRUE(alike(picture.GetPixel({80, 45}), white));
    // The top window is asked, so the white of the parent between them does not show.
    EXPECT_TRUE(alike(picture.GetPixel({91, 55}), 0xFF800000));
    EXPECT_TRUE(alike(picture.GetPixel({97, 55}), red));
    EXPECT_TRUE(alike(picture.GetPixel({105, 55}), blue));
}

TEST_F(SeeThrough, DrawingIsClippedToThePaintRectangleAndOnePixelMore) {
    Box clip;
    child.painter = [&](Graphics& graphics) {
        Gdiplus::Rect bounds;
        flat::GdipGetClipBoundsI(graphics.native(), &bounds);
        clip = {bounds.X, bounds.Y, bounds.Width, bounds.Height};
    };
    child.Create(childAt({0, 0, 60, 40}, dialog.GetHandle()));
    UpdateWindow(child.GetHandle());
    EXPECT_EQ(clip, (Box{0, 0, 61, 41}));
    const Rect part = {10, 5, 20, 12};
    child.Invalidate(&part);
    UpdateWindow(child.GetHandle());
    EXPECT_EQ(clip, (Box{10, 5, 11, 8}));
    SendMessageW(child.GetHandle(), WM_PAINT, 0, 0);
    EXPECT_EQ(clip, (Box{0, 0, 1, 1})) << "nothing was to be painted";
}

}  // namespace
}  // namespace pdx
