#include "ui/toolkit/Dialog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/ui/toolkit/TestWindows.h"

namespace pdx {
namespace {

using namespace testing_support;
using ::testing::ElementsAre;

/// A dialog with its layout in reach, and with some results for the platform.
class OpenDialog : public TestDialog {
  public:
    using Dialog::initialClientHeight;
    using Dialog::initialClientWidth;
    using Dialog::layoutItems;
    using TestDialog::TestDialog;

    MessageResult OnInitDialog() override {
        itemsAtStart = layoutItems.size();
        handleAtStart = hwnd;
        return unhandled();
    }
    MessageResult OnCtlColorStatic(HWND child, HDC) override {
        return child == GetItem(11) ? handled(0x77) : unhandled(0x55);
    }
    MessageResult OnNcHitTest(int32_t x, int32_t) override { return x < 0 ? handled(HTCAPTION) : unhandled(HTBORDER); }
    MessageResult OnAppMessage(UINT, WPARAM wparam, LPARAM) override {
        return wparam ? handled(static_cast<LRESULT>(wparam)) : unhandled(1);
    }

    size_t itemsAtStart = 0;
    HWND handleAtStart = nullptr;
};

TEST(Dialog, MakesOneWindowFromItsTemplate) {
    OpenDialog dialog;
    const HWND made = dialog.Create({.windowName = "ignored", .parent = HWND_MESSAGE});
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(dialog.handleAtStart, made) << "the object has its handle before OnInitDialog";
    EXPECT_EQ(GetParent(made), nullptr);
    EXPECT_EQ(dialog.GetText(), L"");
    EXPECT_EQ(dialog.Create({}), made);

    OpenDialog missing(299);
    EXPECT_EQ(missing.Create({}), nullptr);
}

TEST(Dialog, ReadsItsLayoutBeforeOnInitDialog) {
    OpenDialog dialog;
    dialog.Create({});
    EXPECT_EQ(dialog.itemsAtStart, 2u) << "a child beyond the last record has no item";
    ASSERT_EQ(dialog.layoutItems.size(), 2u);
    const LayoutItem& second = dialog.layoutItems[1];
    EXPECT_EQ(second.hwnd, dialog.GetItem(12));
    EXPECT_EQ((std::vector{second.moveX, second.moveY, second.sizeX, second.sizeY}), (std::vector{37, 100, 26, 1}));
    EXPECT_EQ((Size{dialog.initialClientWidth, dialog.initialClientHeight}), dialog.GetClientSize());
    EXPECT_EQ(dialog.GetInitialRect(11), dialog.GetChildRectById(11));
    EXPECT_NE(dialog.GetInitialRect(11), Rect{});
    EXPECT_EQ(dialog.GetInitialRect(13), Rect{}) << "no record for it";
    EXPECT_EQ(dialog.GetInitialRect(99), Rect{}) << "no such child";

    const Rect before = dialog.GetInitialRect(12);
    SetWindowPos(dialog.GetItem(12), nullptr, 1, 2, 30, 40, SWP_NOZORDER);
    EXPECT_EQ(dialog.GetInitialRect(12), before);
    EXPECT_EQ(dialog.GetChildRectById(12), (Rect{1, 2, 31, 42}));
}

TEST(Dialog, ReturnsHandledResultsAsThePlatformExpectsThem) {
    OpenDialog dialog;
    const HWND window = dialog.Create({});
    EXPECT_EQ(SendMessageW(window, WM_APP, 102, 0), 102) << "through DWLP_MSGRESULT";
    EXPECT_EQ(SendMessageW(window, WM_APP, 0, 0), 0) << "the result of an unhandled message is not used";
    EXPECT_EQ(SendMessageW(window, WM_NCHITTEST, 0, MAKELPARAM(-5, 0)), HTCAPTION);
    EXPECT_NE(SendMessageW(window, WM_NCHITTEST, 0, MAKELPARAM(5, 0)), HTBORDER) << "the platform's result";
    const auto color = [&](int32_t id) {
        return SendMessageW(window, WM_CTLCOLORSTATIC, 0, reinterpret_cast<LPARAM>(dialog.GetItem(id)));
    };
    EXPECT_EQ(color(11), 0x77) << "returned directly";
    EXPECT_NE(color(13), 0x55);
}

TEST(Dialog, AWindowThatOutlivesItsObjectHandlesNoMessages) {
    HWND window = nullptr;
    {
        Dialog dialog(threeChildrenTwoRecords);
        window = dialog.Create({});
    }
    ASSERT_TRUE(IsWindow(window));
    EXPECT_EQ(SendMessageW(window, WM_APP, 102, 0), 0);
    DestroyWindow(window);
}

}  // namespace
}  // namespace pdx
