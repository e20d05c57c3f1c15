// The widgets around their native controls: states after real messages, sizes, texts, timers, notifications of the
// parent, and a few pixels of each.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "tests/ui/toolkit/Pixels.h"
#include "tests/ui/toolkit/TestWindows.h"
#include "ui/toolkit/Button.h"
#include "ui/toolkit/Checkbox.h"
#include "ui/toolkit/LinkButton.h"
#include "ui/toolkit/ProgressBar.h"
#include "ui/toolkit/Static.h"
#include "ui/toolkit/Trackbar.h"

namespace pdx {
namespace {

using namespace testing_support;
using enum VisualState;

constexpr Color buttonBlue = 0xFF276AFC, grey = 0xFF343647, coral = 0xFFFF6D4D;

/// A scroll notification of a trackbar.
struct Scroll {
    bool vertical;
    int32_t code;
    int32_t position;
    bool operator==(const Scroll&) const = default;
    friend void PrintTo(const Scroll& scroll, std::ostream* out) {
        *out << (scroll.vertical ? "v " : "h ") << scroll.code << " at " << scroll.position;
    }
};

class ScrolledDialog : public TestDialog {
  public:
    MessageResult OnVScroll(int32_t code, int32_t position, LPARAM) override { return note(true, code, position); }
    MessageResult OnHScroll(int32_t code, int32_t position, LPARAM) override { return note(false, code, position); }
    std::vector<Scroll> take() {
        MSG message;
        while (PeekMessageW(&message, hwnd, WM_HSCROLL, WM_VSCROLL, PM_REMOVE)) DispatchMessageW(&message);
        return std::exchange(scrolls, {});
    }

  private:
    MessageResult note(bool vertical, int32_t code, int32_t position) {
        // TB_ENDTRACK is the native control's own, after a release of the mouse.
        if (code != TB_ENDTRACK) scrolls.push_back({vertical, code, position});
        return handled();
    }
    std::vector<Scroll> scrolls;
};

class Widgets : public ::testing::Test {
  protected:
    void SetUp() override {
        LoadPrivateFonts();
        dialog.openEmpty();
        moveCursor({0, 0});
    }
    void TearDown() override { ReleaseCapture(); }
    HWND make(const wchar_t* windowClass, DWORD style, const Box& box = {20, 20, 100, 40}, bool visible = true) {
        return makeChild(dialog.getHandle(), windowClass, (visible ? WS_VISIBLE : 0) | style, box);
    }
    static void moveCursor(POINT screen) {
        SetCursorPos(screen.x, screen.y);
        POINT now{};
        GetCursorPos(&now);
        ASSERT_TRUE(now.x == screen.x && now.y == screen.y);
    }
    void moveCursorTo(const Window& widget, int32_t x, int32_t y) {
        POINT place = {x, y};
        ClientToScreen(widget.getHandle(), &place);
        moveCursor(place);
    }
    static Size measured(std::wstring_view text, float size) {
        const RectF bounds = testing_support::measured(text, size, fontBold);
        return {std::lround(bounds.width), std::lround(bounds.height)};
    }

    ScrolledDialog dialog;
};

/// The pixels of a window's client area on the screen, without a paint.
std::vector<Color> onScreen(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    const HDC context = GetDC(window);
    std::vector<Color> pixels;
    for (int y = 0; y < client.bottom; ++y)
        for (int x = 0; x < client.right; ++x) pixels.push_back(GetPixel(context, x, y));
    ReleaseDC(window, context);
    return pixels;
}

template <typename Widget>
void expectStatesOf(Widget& widget, const std::function<void(int32_t, int32_t)>& moveCursor) {
    const HWND window = widget.getHandle();
    EXPECT_EQ(widget.GetVisualState(), normal);
    SetFocus(window);
    EXPECT_EQ(widget.GetVisualState(), focused);
    moveCursor(5, 5);
    EXPECT_EQ(widget.GetVisualState(), hover);
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    EXPECT_EQ(widget.GetVisualState(), pressed);
    EnableWindow(window, FALSE);
    EXPECT_EQ(widget.GetVisualState(), disabled) << "wins over all others";
    EnableWindow(window, TRUE);
    SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    EXPECT_EQ(widget.GetVisualState(), hover);
    moveCursor(-10, -10);
    SendMessageW(window, BM_SETSTATE, TRUE, 0);
    EXPECT_EQ(widget.GetVisualState(), pressed) << "pushed, with the pointer beside it";
    SendMessageW(window, BM_SETSTATE, FALSE, 0);
}

TEST_F(Widgets, ButtonsAndBoxesShowTheStateOfTheNativeControl) {
    Button button(make(L"BUTTON", BS_PUSHBUTTON));
    expectStatesOf(button, [&](int32_t x, int32_t y) { moveCursorTo(button, x, y); });
    SetFocus(dialog.getHandle());
    Checkbox box(make(L"BUTTON", BS_AUTOCHECKBOX, {150, 20, 100, 40}));
    expectStatesOf(box, [&](int32_t x, int32_t y) { moveCursorTo(box, x, y); });
    EXPECT_FALSE(box.IsChecked()) << "the press was not released on it";
    SendMessageW(box.getHandle(), BM_CLICK, 0, 0);
    EXPECT_TRUE(box.IsChecked());
    box.SetChecked(false);
    EXPECT_FALSE(box.IsChecked());
}

TEST_F(Widgets, AButtonRepaintsWhenThePointerEntersOrLeaves) {
    Button button(make(L"BUTTON", BS_PUSHBUTTON));
    for (const UINT message : {WM_MOUSEMOVE, WM_MOUSELEAVE}) {
        paint(button);
        SendMessageW(button.getHandle(), message, 0, MAKELPARAM(5, 5));
        EXPECT_TRUE(isDirty(button)) << message;
    }
}

TEST_F(Widgets, AButtonShowsAndPublishesItsLabelInCapitals) {
    const NameListener names;
    Button button(make(L"BUTTON", BS_PUSHBUTTON));
    button.SetFont(CreateFontByName(textFace, 14, fontBold));
    for (const auto& [label, shown] :
         {std::pair<std::wstring, std::wstring>{L"Let's go", L"LET'S GO"}, {L"zur\u00fcck az", L"ZUR\u00fcCK AZ"}}) {
        button.SetText(label);
        EXPECT_EQ(button.GetText(), shown);
        EXPECT_EQ(names.names().back(), std::pair(button.getHandle(), shown));
        const Size text = measured(shown, 14);
        EXPECT_EQ(button.GetPreferredSize(), (Size{text.width + 32, text.height + 18}));
    }
}

TEST_F(Widgets, ABoxDrawsItsMarkAndPrefersTheWidthOfItsText) {
    Checkbox box(make(L"BUTTON", BS_AUTOCHECKBOX, {20, 20, 200, 22}));
    box.SetFont(CreateFontByName(textFace, 14, fontBold));
    const RectF inside = {5, 5, 12, 12};
    EXPECT_EQ(Drawn(box).strongest(inside), 0u);
    box.SetChecked(true);
    EXPECT_TRUE(alike(Drawn(box).at(11, 1), buttonBlue));
    EXPECT_NE(Drawn(box).strongest(inside), 0u);
    box.SetText(L"Create desktop shortcut");
    const int32_t end = box.GetPreferredSize().width;
    EXPECT_NEAR(end, 36 + measured(L"Create desktop shortcut", 14).width, 1);
}

TEST_F(Widgets, ALinkIsHitOnItsTextAlone) {
    LinkButton link(make(L"BUTTON", BS_PUSHBUTTON, {20, 20, 300, 40}, false));
    link.SetFont(CreateFontByName(textFace, 16, fontRegular));
    link.SetText(L"Customize setup");
    const RectF text = link.getTextBounds();
    EXPECT_GT(text.width, 50) << "before the first paint";
    EXPECT_NEAR(text.x + text.width / 2, 150, 1);
    EXPECT_NEAR(text.y + text.height / 2, 20, 1);
    const auto left = static_cast<int32_t>(std::ceil(text.x)), top = static_cast<int32_t>(std::ceil(text.y));
    const auto right = static_cast<int32_t>(std::ceil(text.x + text.width));
    const auto bottom = static_cast<int32_t>(std::ceil(text.y + text.height));
    const auto hit = [&](int32_t x, int32_t y) {
        POINT place = {x, y};
        ClientToScreen(link.getHandle(), &place);
        return SendMessageW(link.getHandle(), WM_NCHITTEST, 0, MAKELPARAM(place.x, place.y));
    };
    EXPECT_EQ(hit(left, top), HTCLIENT);
    EXPECT_EQ(hit(right - 1, bottom - 1), HTCLIENT);
    for (const Point outside : {Point{left - 1, top}, {left, top - 1}, {right, top}, {left, bottom}})
        EXPECT_EQ(hit(outside.x, outside.y), HTNOWHERE) << outside.x << " " << outside.y;
    link.SetPosition({20, 20, 220, 60}, SWP_NOZORDER);
    EXPECT_NEAR(link.getTextBounds().x + text.width / 2, 100, 1) << "follows the size";
}

TEST_F(Widgets, ALinkIsHighlightedUnderThePointerAndWithTheFocus) {
    LinkButton link(make(L"BUTTON", BS_PUSHBUTTON, {20, 20, 300, 40}));
    link.SetFont(CreateFontByName(textFace, 16, fontRegular));
    link.SetText(L"Customize setup");
    const auto setCursor = [&](HWND over) {
        return SendMessageW(link.getHandle(), WM_SETCURSOR, reinterpret_cast<WPARAM>(over),
                            MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    };
    const auto color = [&link] { return Drawn(link).strongest(); };
    constexpr Color cold = 0xFF6897FD, hot = 0xFF5288FD, greyed = palette::disabledText;
    moveCursorTo(link, 150, 20);
    setCursor(dialog.getHandle());
    EXPECT_TRUE(alike(color(), cold)) << "another window's cursor";
    EXPECT_EQ(setCursor(link.getHandle()), 1);
    EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, MAKEINTRESOURCEW(32649)));
    EXPECT_TRUE(alike(color(), hot));
    SendMessageW(link.getHandle(), WM_MOUSELEAVE, 0, 0);
    EXPECT_TRUE(alike(color(), cold));
    SetFocus(link.getHandle());
    EXPECT_TRUE(alike(color(), hot));
    EnableWindow(link.getHandle(), FALSE);
    EXPECT_TRUE(alike(color(), greyed));
}

TEST_F(Widgets, ABarsTimerRunsOnlyInAVisibleMarquee) {
    const HWND window = make(PROGRESS_CLASSW, PBS_MARQUEE, {20, 20, 320, 8}, false);
    ProgressBar bar(window);
    // KillTimer succeeds only for a running timer, which is then started again.
    const auto ticks = [&] { return KillTimer(window, 100) && SetTimer(window, 100, 20, nullptr) != 0; };
    const auto place = [&](UINT flag) { SetWindowPos(window, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | flag); };
    EXPECT_TRUE(bar.isMarquee()) << "from its style";
    EXPECT_FALSE(ticks()) << "hidden";
    place(SWP_SHOWWINDOW);
    EXPECT_TRUE(ticks());
    place(SWP_HIDEWINDOW);
    EXPECT_FALSE(ticks());
    place(SWP_SHOWWINDOW);
    SendMessageW(window, PBM_SETPOS, 40, 0);
    EXPECT_FALSE(bar.isMarquee() || ticks()) << "the first position ends it";
    place(SWP_HIDEWINDOW);
    place(SWP_SHOWWINDOW);
    EXPECT_FALSE(ticks());
    SendMessageW(window, PBM_SETMARQUEE, TRUE, 20);
    EXPECT_TRUE(bar.isMarquee() && ticks());
    EXPECT_FALSE(KillTimer(window, 1)) << "no timer of the native control";
    SendMessageW(window, PBM_SETMARQUEE, FALSE, 0);
    EXPECT_FALSE(bar.isMarquee() || ticks());
}

TEST_F(Widgets, ABarIsFilledUpToItsPosition) {
    ProgressBar bar(make(PROGRESS_CLASSW, 0, {20, 20, 320, 8}));
    constexpr Color crimson = palette::Crimson[5];
    const struct {
        int32_t position, x;
        Color color;
    } rows[] = {{0, 1, coral}, {0, 5, grey}, {50, 0, coral}, {50, 161, grey}, {100, 319, crimson}, {100, 3, coral}};
    for (const auto& row : rows) {
        SendMessageW(bar.getHandle(), PBM_SETPOS, static_cast<WPARAM>(row.position), 0);
        EXPECT_TRUE(alike(Drawn(bar).at(row.x, 4), row.color)) << row.position << " at " << row.x;
    }
}

TEST_F(Widgets, EachShowsItsTextOrItsMark) {
    Button button(make(L"BUTTON", BS_PUSHBUTTON));
    CloseButton cross(make(L"BUTTON", BS_PUSHBUTTON, {130, 20, 32, 32}));
    Checkbox box(make(L"BUTTON", BS_AUTOCHECKBOX, {20, 80, 200, 30}));
    Static label(make(L"STATIC", 0, {20, 120, 200, 40}));
    Trackbar track(make(TRACKBAR_CLASSW, TBS_VERT, {240, 20, 8, 100}));
    for (Window* const each : std::initializer_list<Window*>{&button, &box, &label}) {
        each->SetFont(CreateFontByName(textFace, 18, fontBold));
        each->SetText(L"Install");
    }
    const struct {
        Window& widget;
        Box part;
        Color ink;
    } rows[] = {{button, {20, 5, 60, 30}, palette::defaultText},
                {cross, {13, 13, 6, 6}, palette::defaultText},
                {box, {36, 0, 60, 30}, palette::defaultText},
                {label, {0, 0, 60, 40}, palette::defaultText},
                {track, {2, 0, 4, 50}, palette::Grey[7]}};
    for (const auto& [widget, part, ink] : rows) {
        const Drawn picture(widget);
        bool found = false;
        for (int32_t y = part.y; y < part.y + part.height; ++y)
            for (int32_t x = part.x; x < part.x + part.width; ++x)
                // Text on a clear ground is not wholly opaque.
                found = found || (picture.at(x, y) >> 31 && alike(picture.at(x, y) | 0xFF000000, ink));
        EXPECT_TRUE(found) << widget.GetWindowClassName() << " at " << part.x;
    }
}

TEST_F(Widgets, AStepOfABarRepaintsOnlyTheMovedPartAsAWholePaintDoes) {
    dialog.painter = [](Graphics& graphics) { graphics.fillRectangle(Brush(coral), {0, 0, 500, 500}); };
    ProgressBar bar(make(PROGRESS_CLASSW, PBS_MARQUEE, {20, 20, 320, 8}));
    paint(bar);
    const std::vector<Color> first = onScreen(bar.getHandle());
    bool moved = false;
    LONG narrowest = 320;
    for (int step = 0; step < 25; ++step) {
        MSG tick;
        GetMessageW(&tick, bar.getHandle(), WM_TIMER, WM_TIMER);
        DispatchMessageW(&tick);
        RECT dirty{};
        GetUpdateRect(bar.getHandle(), &dirty, FALSE);
        narrowest = std::min(narrowest, dirty.right - dirty.left);
        paint(bar);
        const std::vector<Color> left = onScreen(bar.getHandle());
        bar.Invalidate();
        paint(bar);
        ASSERT_EQ(left, onScreen(bar.getHandle())) << step;
        moved = moved || left != first;
    }
    EXPECT_TRUE(moved);
    EXPECT_LT(narrowest, 320);
}

TEST_F(Widgets, ATrackbarNotifiesItsParentOfEachChangeByTheUser) {
    constexpr bool vertical = true;
    Trackbar track(make(TRACKBAR_CLASSW, TBS_VERT, {20, 20, 8, 100}));
    track.SetRange(0, 100);
    track.SetPageSize(100);
    track.SetLineSize(20);
    const auto mouse = [&](UINT message, int32_t along) {
        SendMessageW(track.getHandle(), message, MK_LBUTTON, MAKELPARAM(4, along));
    };
    const auto wheel = [&](int32_t delta) { SendMessageW(track.getHandle(), WM_MOUSEWHEEL, MAKEWPARAM(0, delta), 0); };
    using Scrolls = std::vector<Scroll>;
    dialog.take();
    mouse(WM_MOUSEMOVE, 40);
    EXPECT_EQ(dialog.take(), Scrolls{}) << "nothing is dragged";
    mouse(WM_LBUTTONDOWN, 10);
    EXPECT_EQ(GetCapture(), track.getHandle());
    mouse(WM_MOUSEMOVE, 30);
    EXPECT_EQ(dialog.take(), (Scrolls{{vertical, TB_THUMBTRACK, 40}}));
    mouse(WM_MOUSEMOVE, 500);
    mouse(WM_MOUSEMOVE, 600);
    EXPECT_EQ(dialog.take(), (Scrolls{{vertical, TB_THUMBTRACK, 100}})) << "once";
    mouse(WM_LBUTTONUP, 600);
    EXPECT_EQ(dialog.take(), (Scrolls{{vertical, TB_THUMBPOSITION, 100}}));
    EXPECT_EQ(GetCapture(), nullptr);
    mouse(WM_LBUTTONDOWN, 5);
    EXPECT_EQ(dialog.take(), (Scrolls{{vertical, TB_PAGEUP, 0}}));
    mouse(WM_LBUTTONDOWN, 80);
    EXPECT_EQ(dialog.take(), (Scrolls{{vertical, TB_PAGEDOWN, 100}}));
    wheel(120);
    wheel(-60);
    EXPECT_EQ(dialog.take(), (Scrolls{{vertical, TB_LINEUP, 80}, {vertical, TB_LINEDOWN, 90}}));
    track.home();
    track.home();
    track.lineDown();
    track.end();
    EXPECT_EQ(dialog.take(), (Scrolls{{vertical, TB_TOP, 0}, {vertical, TB_LINEDOWN, 20}, {vertical, TB_BOTTOM, 100}}));
    track.SetPosition(50);
    EXPECT_EQ(dialog.take(), Scrolls{}) << "no notification";
    EXPECT_TRUE(isDirty(track));
}

}  // namespace
}  // namespace pdx
