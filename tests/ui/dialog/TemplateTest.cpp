// The installer's own dialog template, as the library carries it.
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "resources/ids.h"
#include "tests/ui/toolkit/TestWindows.h"

namespace pdx {
namespace {

class InstallerTemplate : public testing_support::TestDialog {
  public:
    InstallerTemplate() : TestDialog(IDD_BOOTSTRAPPER) {}
    using Dialog::layoutItems;
};

TEST(Template, HasItsChildrenAndLayoutInOrder) {
    struct Case {
        int32_t id;
        std::array<int32_t, 4> layout;  ///< move x, move y, size x, size y
    };
    const std::vector<Case> recorded = {
        {1003, {0, 0, 0, 0}},     {1004, {0, 0, 0, 0}},     {1010, {0, 0, 0, 0}},     {1011, {0, 0, 0, 0}},
        {1005, {0, 0, 0, 0}},     {1001, {0, 50, 100, 50}}, {1015, {0, 50, 100, 50}}, {1002, {0, 50, 100, 50}},
        {1014, {0, 50, 100, 50}}, {1009, {37, 100, 25, 0}}, {1007, {37, 100, 25, 0}}, {1012, {37, 100, 25, 0}},
        {1013, {25, 100, 50, 0}}, {1006, {100, 0, 0, 0}},
    };
    constexpr int32_t closeButton = 1008;

    InstallerTemplate dialog;
    ASSERT_NE(dialog.Create({}), nullptr);
    std::vector<int32_t> ids, shown;
    for (HWND child = GetWindow(dialog.GetHandle(), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        ids.push_back(GetDlgCtrlID(child));
        if (GetWindowLongW(child, GWL_STYLE) & WS_VISIBLE) shown.push_back(ids.back());
    }
    std::vector<int32_t> expectedIds;
    for (const Case& c : recorded) expectedIds.push_back(c.id);
    expectedIds.push_back(closeButton);
    EXPECT_EQ(ids, expectedIds);
    EXPECT_EQ(shown, std::vector{1005}) << "the picture alone shows before the first page";

    ASSERT_EQ(dialog.layoutItems.size(), recorded.size());
    for (size_t i = 0; i < recorded.size(); ++i) {
        const LayoutItem& item = dialog.layoutItems[i];
        EXPECT_EQ(GetDlgCtrlID(item.hwnd), recorded[i].id);
        EXPECT_EQ((std::array{item.moveX, item.moveY, item.sizeX, item.sizeY}), recorded[i].layout) << recorded[i].id;
        EXPECT_EQ(dialog.GetInitialRect(recorded[i].id), dialog.GetChildRectById(recorded[i].id)) << recorded[i].id;
        EXPECT_NE(dialog.GetInitialRect(recorded[i].id), Rect{}) << recorded[i].id;
    }
    EXPECT_EQ(dialog.GetInitialRect(closeButton), Rect{}) << "it has no record";
    EXPECT_NE(dialog.GetChildRectById(closeButton), Rect{});
}

}  // namespace
}  // namespace pdx
