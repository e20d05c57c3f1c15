#include "ui/toolkit/Window.h"

#include <commctrl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/platform/CapturedLog.h"
#include "tests/ui/toolkit/TestWindows.h"

namespace pdx {
namespace {

using namespace testing_support;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Records which handlers run, and leaves their messages unhandled.
class NotingControl : public Control {
  public:
    using Control::Control;
    const char* GetWindowClassName() const override { return className; }
    MessageResult OnMouseEnter(int32_t x, int32_t y) override { return note("enter", x, y); }
    MessageResult OnMouseMove(int32_t x, int32_t y) override { return note("move", x, y); }
    MessageResult OnMouseLeave() override { return note("leave"); }
    MessageResult OnUserMessage(UINT message, WPARAM, LPARAM) override { return note("user", message); }
    MessageResult OnSetFont(WPARAM newFont, bool redraw) override {
        note("font", redraw);
        return Control::OnSetFont(newFont, redraw);
    }
    MessageResult OnKeyDown(WPARAM key, int32_t, bool, bool) override {
        if (key == VK_F1) throw std::runtime_error("no such page");
        throw 2;
    }
    MessageResult OnGetDlgCode(WPARAM) override { return dlgCode; }

    const char* className = "BUTTON";
    MessageResult dlgCode = unhandled();
    std::vector<std::string> notes;

  protected:
    MessageResult note(const std::string& what, int64_t first = 0, int64_t second = 0) {
        notes.push_back(what + " " + std::to_string(first) + " " + std::to_string(second));
        return unhandled();
    }
};

/// A dialog whose children the test wraps.
class WindowTest : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(dialog.Create({}), nullptr); }
    TestDialog dialog;
};

TEST_F(WindowTest, CreateMakesOneWindowAndSubclassesIt) {
    const CapturedLog log;
    NotingControl control;
    const HWND made =
        control.Create({.style = WS_CHILD, .x = 10, .y = 20, .width = 30, .height = 40, .parent = dialog.getHandle()});
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(dialog.GetChildRect(made), (Rect{10, 20, 40, 60}));
    SendMessageW(made, WM_USER + 1, 0, 0);
    EXPECT_THAT(control.notes, ElementsAre("user 1025 0"));

    EXPECT_EQ(control.Create({}), made);
    SendMessageW(made, WM_USER + 1, 0, 0);
    EXPECT_EQ(control.notes.size(), 2u) << "subclassed once";
    EXPECT_THAT(log.takeTexts(), IsEmpty());
}

TEST_F(WindowTest, AFailedCreateIsLoggedAndLeavesNoHandle) {
    const CapturedLog log;
    NotingControl control;
    control.className = "no such class";
    EXPECT_EQ(
        control.Create({.windowName = "name", .style = 0x50000000, .exStyle = 0x20, .parent = dialog.getHandle()}),
        nullptr);
    EXPECT_EQ(control.getHandle(), nullptr);
    CreateWindowExA(0, control.className, "", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    const auto error = static_cast<unsigned>(GetLastError());
    char expected[300];
    snprintf(expected, sizeof expected,
             "2 Window::Create Failed to create window: error=%08x; exStyle=00000020; className=no such class; "
             "windowName=name; style=50000000; parent=%08x; instance=00000000",
             error, static_cast<unsigned>(reinterpret_cast<uintptr_t>(dialog.getHandle())));
    EXPECT_THAT(log.takeTexts(), ElementsAre(expected));
}

TEST_F(WindowTest, TheDestructorRestoresTheNativeProcedure) {
    const HWND button = dialog.GetItem(12);
    {
        NotingControl control(button);
        control.dlgCode = handled(0x123);
        EXPECT_EQ(SendMessageW(button, WM_GETDLGCODE, 0, 0), 0x123);
    }
    EXPECT_NE(SendMessageW(button, WM_GETDLGCODE, 0, 0), 0x123);
    {
        const NotingControl outlives(button);
        DestroyWindow(button);
        EXPECT_EQ(outlives.getHandle(), button) << "the object outlives its window";
    }
}

TEST_F(WindowTest, OnMouseEnterRunsOnceAVisitBeforeOnMouseMove) {
    NotingControl control(dialog.GetItem(12));
    SendMessageW(control.getHandle(), WM_MOUSEMOVE, 0, MAKELPARAM(3, -4));
    EXPECT_THAT(control.notes, ElementsAre("enter 3 -4", "move 3 -4"));
    control.notes.clear();
    SendMessageW(control.getHandle(), WM_MOUSEMOVE, 0, MAKELPARAM(5, 6));
    SendMessageW(control.getHandle(), WM_MOUSELEAVE, 0, 0);
    EXPECT_THAT(control.notes, ElementsAre("move 5 6", "leave 0 0"));
    control.notes.clear();
    SendMessageW(control.getHandle(), WM_MOUSEMOVE, 0, MAKELPARAM(7, 8));
    EXPECT_THAT(control.notes, ElementsAre("enter 7 8", "move 7 8"));
}

TEST_F(WindowTest, AnExceptionOfAHandlerIsLoggedAndContained) {
    const CapturedLog log;
    NotingControl control(dialog.GetItem(12));
    EXPECT_EQ(SendMessageW(control.getHandle(), WM_KEYDOWN, VK_F1, 1), 0);
    EXPECT_EQ(SendMessageW(control.getHandle(), WM_KEYDOWN, VK_F2, 1), 0);
    EXPECT_THAT(log.takeTexts(),
                ElementsAre("0 Window::ReceiveMessage Message failed: message=0100; error=no such page",
                            "0 Window::ReceiveMessage Message failed: message=0100"));
}

TEST_F(WindowTest, SetFontKeepsTheFontAndSetsANativeCopy) {
    NotingControl control(dialog.GetItem(12));
    EXPECT_NE(control.getFont(), nullptr) << "the template's";
    control.SetFont(CreateFontByName(L"no such face", 20, fontBold | fontItalic));
    EXPECT_THAT(control.notes, ElementsAre("font 0 0"));
    ASSERT_NE(control.getFont(), nullptr);
    EXPECT_EQ(control.getFont()->getSize(), 20);
    EXPECT_EQ(control.getFont()->GetStyle(), fontBold | fontItalic);

    const auto native = reinterpret_cast<HFONT>(SendMessageW(control.getHandle(), WM_GETFONT, 0, 0));
    LOGFONTW record{};
    ASSERT_EQ(GetObjectW(native, sizeof record, &record), static_cast<int>(sizeof record));
    EXPECT_EQ(record.lfHeight, -20);
    EXPECT_EQ(record.lfWeight, FW_BOLD);
    EXPECT_TRUE(record.lfItalic);

    control.SetFont(nullptr);
    ASSERT_NE(control.getFont(), nullptr) << "null changes nothing";
    control.SetFont(CreateFontByName(L"no such face", 14, fontRegular));
    EXPECT_EQ(GetObjectType(native), 0u) << "the earlier native font is freed";
}

}  // namespace
}  // namespace pdx
