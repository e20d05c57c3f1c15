// Which picture a page shows, and what is ready when.
#include "ui/dialog/PagePictures.h"

#include <cstdlib>

#include "harness/programs/Snapshot.h"
#include "tests/ui/dialog/ProbedDialog.h"
#include "ui/toolkit/Painting.h"

namespace pdx {
namespace {

using testing_support::ProbedDialog;

constexpr Color alphaMask = 0xFF000000;
constexpr int32_t clearlyMany = 500;

/// The picture's own pixels where nothing shines through them, in a box of that size as the dialog has one.
struct Ink {
    int32_t pixels = 0;
    int32_t differing = 0;  ///< of them, those that the snapshot has otherwise
};

/// More than what rounding does where a picture is blended with what lies under it.
bool differ(Color one, Color other) {
    const auto channel = [](Color color, int shift) { return static_cast<int32_t>(color >> shift & 0xFF); };
    for (const int shift : {0, 8, 16})
        if (std::abs(channel(one, shift) - channel(other, shift)) > 2) return true;
    return false;
}

Ink inkOf(uint16_t picture, const Snapshot& snapshot, const Box& place) {
    const auto decoded = LoadPicture(picture);
    if (!decoded) return {};
    const Bitmap expected({place.width, place.height});
    Graphics graphics(expected);
    ApplyQuality(graphics);
    graphics.drawImage(*decoded, fitPicture({0, 0, place.width, place.height}, decoded->getSize()));
    Ink ink;
    for (int32_t y = 0; y < place.height; ++y)
        for (int32_t x = 0; x < place.width; ++x) {
            const Color color = expected.getPixel({x, y});
            if ((color & alphaMask) != alphaMask) continue;
            ++ink.pixels;
            ink.differing += differ(snapshot.getPixel({place.x + x, place.y + y}), color);
        }
    return ink;
}

TEST(PagePictures, EachPageShowsItsPicture) {
    const struct {
        const char* what;
        int32_t kind;
        uint32_t flags;
        uint16_t picture;
        Size size;
    } rows[] = {
        {"welcome", 1, 0, 106, {120, 120}},
        {"progress", 4, 0, 106, {120, 120}},
        {"an error", 5, 0x10, 107, {150, 150}},
        {"a question", 5, 0x40, 106, {120, 120}},
        {"an error's icon on a page that is none", 4, 0x10, 106, {120, 120}},
        {"the older client", 3, 0, 108, {732, 540}},
    };
    ProbedDialog probed;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const auto picture = LoadPicture(row.picture);
        ASSERT_NE(picture, nullptr);
        EXPECT_EQ(picture->getSize(), row.size);
        PageState page;
        page.kind = PageKind{row.kind};
        page.flags = row.flags;
        probed.dialog->ReplacePage(page);
        probed.settle();
        const Snapshot shown(probed.window());
        const Ink ink = inkOf(row.picture, shown, boxOf(probed.dialog->GetChildRectById(IDC_PICTURE)));
        EXPECT_GT(ink.pixels, clearlyMany);
        EXPECT_EQ(ink.differing, 0);
    }
}

TEST(PagePictures, LoadOnlyForARunWithAWindow) {
    BOOTSTRAPPER_COMMAND command{};
    command.display = BOOTSTRAPPER_DISPLAY_EMBEDDED;
    command.relationType = BOOTSTRAPPER_RELATION_UPDATE;
    for (const auto& [argument, begun] : {std::pair{L"/passive", true}, {L"/quiet", false}}) {
        const std::wstring arguments[] = {argument};
        // Its thread waits for a size that nobody sets.
        const PreparedPage page(command, arguments);
        EXPECT_EQ(g_pagePictures.get() != nullptr, begun) << toUtf8(argument);
    }
}

TEST(PagePictures, ScaleTheBackgroundToTheWindow) {
    PagePictures pictures;
    pictures.setWindowSize({480, 450});
    ASSERT_NE(pictures.background(), nullptr);
    EXPECT_EQ(pictures.background()->getSize(), (Size{480, 450}));
    EXPECT_EQ(pictures.picture(105), nullptr);
}

}  // namespace
}  // namespace pdx
