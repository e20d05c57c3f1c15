// Links, scrolling and focus of marked-up text, by mouse and by keyboard.
#include <windows.h>

#include <commctrl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/ui/toolkit/HtmlStaticFixture.h"

namespace pdx {
namespace {

using namespace testing_support;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char twoLinks[] = "see <a href=\"action:one\">one</a> or <a href=\"action:two\">two</a>";

class HtmlStaticInputTest : public HtmlStaticTest {
  protected:
    /// A point in the middle of a run.
    static Point middleOf(const HtmlProbe& label, size_t run) {
        const RectF place = coveredBy(label.getRuns().at(run));
        return {static_cast<int32_t>(place.x + place.width / 2),
                static_cast<int32_t>(place.y + place.height / 2) - label.getScrollTrack().getPosition()};
    }
    static void send(const HtmlProbe& label, UINT message, Point at) {
        SendMessageW(label.getHandle(), message, 0, MAKELPARAM(at.x, at.y));
    }
    static void press(const HtmlProbe& label, size_t run) { send(label, WM_LBUTTONDOWN, middleOf(label, run)); }
    static void letGo(const HtmlProbe& label, size_t run) { send(label, WM_LBUTTONUP, middleOf(label, run)); }
    static void click(const HtmlProbe& label, size_t run) {
        press(label, run);
        letGo(label, run);
    }
    static void key(const HtmlProbe& label, WPARAM key) { SendMessageW(label.getHandle(), WM_KEYDOWN, key, 1); }
    static bool isUnderlined(HtmlProbe& label, size_t run) { return label.lineIn(run) > 0; }
    /// Whether the label was dirty; paints it.
    static bool repaints(const HtmlProbe& label) {
        const bool dirty = isDirty(label);
        paint(label);
        return dirty;
    }
};

TEST_F(HtmlStaticInputTest, OnlyAClickThatBeginsAndEndsOnALinkFollowsIt) {
    HtmlProbe& label = makeLabel(twoLinks, {20, 20, 320, 80});
    constexpr size_t text = 0, one = 1, two = 3;
    const struct {
        const char* what;
        size_t pressed;
        std::vector<size_t> moves;
        size_t letGo;
        size_t links;
    } cases[] = {
        {"on text", text, {}, text, 0},
        {"from text to link", text, {one}, one, 0},
        {"off the link", one, {text}, text, 0},
        {"to the other link", one, {two}, two, 0},
        {"off and back", one, {text, one}, one, 1},
    };
    for (const auto& row : cases) {
        press(label, row.pressed);
        for (const size_t run : row.moves) send(label, WM_MOUSEMOVE, middleOf(label, run));
        letGo(label, row.letGo);
        EXPECT_EQ(dialog.take().size(), row.links) << row.what;
        EXPECT_EQ(GetCapture(), nullptr) << row.what;
    }
    letGo(label, one);
    EXPECT_THAT(dialog.take(), IsEmpty()) << "without a press";
}

TEST_F(HtmlStaticInputTest, APressEndsWithItsCapture) {
    HtmlProbe& label = makeLabel(twoLinks, {20, 20, 320, 80});
    press(label, 1);
    ::SetCapture(makeButton());
    send(label, WM_MOUSEMOVE, middleOf(label, 3));
    EXPECT_TRUE(isUnderlined(label, 3)) << "no link is pressed";
    letGo(label, 1);
    EXPECT_THAT(dialog.take(), IsEmpty());
    ReleaseCapture();
}

TEST_F(HtmlStaticInputTest, TheParentMaySetAnotherTextBeforeItReadsTheLink) {
    HtmlProbe& label = makeLabel(twoLinks, {20, 20, 320, 80});
    dialog.onLink = [&] { label.SetText(L"<a href=other>another</a>"); };
    click(label, 1);
    EXPECT_THAT(dialog.take(), ElementsAre(L"action:one"));
    letGo(label, 0);
    EXPECT_THAT(dialog.take(), IsEmpty()) << "the press has ended";
}

TEST_F(HtmlStaticInputTest, TheLinkUnderThePointerIsUnderlined) {
    HtmlProbe& label = makeLabel(twoLinks, {20, 20, 320, 80});
    repaints(label);
    send(label, WM_MOUSEMOVE, middleOf(label, 1));
    EXPECT_TRUE(repaints(label));
    EXPECT_TRUE(isUnderlined(label, 1));
    EXPECT_FALSE(isUnderlined(label, 3));
    EXPECT_FALSE(isUnderlined(label, 0));
    send(label, WM_MOUSEMOVE, middleOf(label, 1));
    EXPECT_FALSE(repaints(label)) << "the same link";
    send(label, WM_MOUSEMOVE, middleOf(label, 0));
    EXPECT_TRUE(repaints(label));
    EXPECT_FALSE(isUnderlined(label, 1));
    send(label, WM_MOUSEMOVE, middleOf(label, 3));
    SendMessageW(label.getHandle(), WM_MOUSELEAVE, 0, 0);
    EXPECT_TRUE(repaints(label));
    EXPECT_FALSE(isUnderlined(label, 3)) << "the pointer has left the label";
    // While one link is pressed, no other is underlined.
    press(label, 1);
    send(label, WM_MOUSEMOVE, middleOf(label, 3));
    EXPECT_FALSE(isUnderlined(label, 3));
    send(label, WM_MOUSEMOVE, middleOf(label, 1));
    EXPECT_TRUE(isUnderlined(label, 1));
    letGo(label, 1);
    label.setMarkup(twoLinks);
    EXPECT_FALSE(isUnderlined(label, 1)) << "a new text";
}

TEST_F(HtmlStaticInputTest, TheCursorIsAHandOnALink) {
    HtmlProbe& label = makeLabel(twoLinks, {20, 20, 320, 80});
    const HCURSOR hand = LoadCursorW(nullptr, MAKEINTRESOURCEW(32649)),
                  arrow = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
    const auto cursorOver = [&](size_t run) {
        const Point middle = middleOf(label, run);
        POINT screen = {middle.x, middle.y};
        ClientToScreen(label.getHandle(), &screen);
        SetCursorPos(screen.x, screen.y);
        SendMessageW(label.getHandle(), WM_SETCURSOR, reinterpret_cast<WPARAM>(label.getHandle()),
                     MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
        return GetCursor();
    };
    SetCursor(hand);
    EXPECT_EQ(cursorOver(0), arrow) << "after another window's hand";
    EXPECT_EQ(cursorOver(1), hand);
    EXPECT_EQ(cursorOver(0), arrow);
    SetCursorPos(0, 0);
}

TEST_F(HtmlStaticInputTest, ALinkIsHitWhereItIsScrolledTo) {
    HtmlProbe& label = makeLabel("<a href=first>first</a><br>b<br>c<br>d<br><a href=last>last</a>", {20, 20, 220, 80});
    const size_t last = label.getRuns().size() - 1;
    const Point place = middleOf(label, last);
    click(label, last);
    EXPECT_THAT(dialog.take(), ElementsAre(L"last")) << "below the window's edge";
    key(label, VK_END);
    send(label, WM_LBUTTONDOWN, place);
    send(label, WM_LBUTTONUP, place);
    EXPECT_THAT(dialog.take(), IsEmpty()) << "at its unscrolled place";
    click(label, last);
    EXPECT_THAT(dialog.take(), ElementsAre(L"last"));
    EXPECT_LT(middleOf(label, last).y, 60);
    EXPECT_LT(middleOf(label, 0).y, 0);
}

TEST_F(HtmlStaticInputTest, ScrollsByKeyboard) {
    HtmlProbe& label = makeLabel("1<br>2<br>3<br>4<br>5<br>6<br>7<br>8<br>9<br>10", {0, 0, 200, 50});
    const Trackbar& track = label.getScrollTrack();
    const int32_t end = track.getState().maximum;
    ASSERT_GT(end, 150);
    const std::pair<WPARAM, int32_t> steps[] = {{VK_DOWN, 20}, {VK_NEXT, 70},     {VK_UP, 50}, {VK_PRIOR, 0},
                                                {VK_END, end}, {VK_UP, end - 20}, {VK_HOME, 0}};
    for (const auto& [pressed, position] : steps) {
        EXPECT_TRUE(label.OnKeyDown(pressed, 1, false, false).handled);
        EXPECT_EQ(track.getPosition(), position) << pressed;
    }
    EXPECT_FALSE(label.OnKeyDown(VK_SPACE, 1, false, false).handled);
}

TEST_F(HtmlStaticInputTest, ScrollsByWheelWhenTheTrackShows) {
    HtmlProbe& label = makeLabel("1<br>2<br>3<br>4<br>5<br>6", {0, 0, 200, 50});
    for (const auto& [delta, position] : {std::pair{-120, 20}, {30, 15}, {12000, 0}}) {
        paint(label);
        SendMessageW(label.getHandle(), WM_MOUSEWHEEL, static_cast<WPARAM>(delta) << 16, MAKELPARAM(60, 60));
        EXPECT_EQ(label.getScrollTrack().getPosition(), position);
    }
}

TEST_F(HtmlStaticInputTest, AMoveOfTheTrackRepaintsTheText) {
    HtmlProbe& label = makeLabel("1<br>2<br>3<br>4<br>5", {0, 0, 200, 50});
    paint(label);
    key(label, VK_DOWN);
    EXPECT_FALSE(isDirty(label)) << "the track posts its notification";
    EXPECT_TRUE(pumpUntil([&] { return isDirty(label); }));
}

TEST_F(HtmlStaticInputTest, FocusScrollsTheLinkIntoView) {
    HtmlProbe& label = makeLabel("<a href=x>a</a><br>b<br>c<br>d<br>e<br><a href=y>f</a>", {0, 0, 200, 60});
    makeButton();
    paint(label);
    const Trackbar& track = label.getScrollTrack();
    ASSERT_TRUE(track.IsVisible());
    ::SetFocus(label.getHandle());
    EXPECT_EQ(track.getPosition(), 0);
    key(label, VK_TAB);
    const RectF last = coveredBy(label.getRuns().back());
    EXPECT_EQ(track.getPosition(), static_cast<int32_t>(last.y + last.height - 60));
}

TEST_F(HtmlStaticInputTest, ALabelWithoutLinksKeepsTheFocusOnlyWhenItScrolls) {
    HtmlProbe& label = makeLabel({0, 0, 200, 60});
    const HWND button = makeButton();
    label.SetText(L"words");
    ::SetFocus(label.getHandle());
    EXPECT_EQ(GetFocus(), button);
    label.SetText(L"one<br>two<br>three");
    paint(label);
    ::SetFocus(label.getHandle());
    EXPECT_EQ(GetFocus(), label.getHandle());
    key(label, VK_TAB);
    EXPECT_EQ(GetFocus(), button);
}

TEST_F(HtmlStaticInputTest, TwoLabelsWithoutLinksMoveTheFocusOnce) {
    HtmlProbe &one = makeLabel({0, 0, 100, 60}, WS_TABSTOP), &two = makeLabel({0, 60, 100, 120}, WS_TABSTOP);
    ASSERT_TRUE(isTabStop(one) && isTabStop(two));
    ::SetFocus(one.getHandle());
    EXPECT_TRUE(one.HasFocus() || two.HasFocus());
}

TEST_F(HtmlStaticInputTest, EnterFollowsThePressedLinkOnly) {
    HtmlProbe& label = makeLabel("words", {0, 0, 280, 80});
    EXPECT_TRUE(label.OnKeyDown(VK_RETURN, 1, false, false).handled);
    EXPECT_THAT(dialog.take(), IsEmpty());
    label.setMarkup(twoLinks);
    press(label, 3);
    key(label, VK_RETURN);
    EXPECT_THAT(dialog.take(), ElementsAre(L"action:two")) << "though the first has the focus";
    letGo(label, 0);
}

}  // namespace
}  // namespace pdx
