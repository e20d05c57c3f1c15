#include <windows.h>

#include "ui/toolkit/HtmlStatic.h"

#include <commctrl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "tests/platform/Crash.h"
#include "tests/ui/toolkit/HtmlStaticFixture.h"

namespace {

/// The thread whose count-th allocation of a thousand bytes or more fails.
struct {
    DWORD thread = 0;
    int count = 0;
} shortage;

}  // namespace

void* operator new(size_t bytes) {
    if (bytes >= 1000 && GetCurrentThreadId() == shortage.thread && --shortage.count == 0) throw std::bad_alloc();
    if (void* const memory = std::malloc(bytes)) return memory;
    throw std::bad_alloc();
}

namespace pdx {
namespace {

using namespace testing_support;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char fourLines[] = "one<br>two<br>three<br><a href=\"action:four\">four</a>";

TEST_F(HtmlStaticTest, StartsFromTheWindowsFontAndTheDefaultLineHeight) {
    HtmlProbe& label = makeLabel();
    label.SetFont(CreateFontByName(L"no such face", 18, fontBold | fontItalic | fontUnderline | fontStrikeout));
    const std::wstring face = label.getFont()->getFamilyName();
    label.SetDefaultLineHeight({LineHeight::pixels, 31});
    label.SetText(L"x");
    const FontRecord font = {.height = 18,
                             .weight = 700,
                             .italic = true,
                             .underline = true,
                             .strikeout = true,
                             .quality = ANTIALIASED_QUALITY,
                             .face = face};
    ASSERT_EQ(label.getRuns().size(), 1u);
    EXPECT_EQ(label.getRuns()[0].style, (TextStyle{font, 0xFFFFFFFF, L"", {LineHeight::pixels, 31}}));

    label.SetDefaultLineHeight({});
    EXPECT_EQ(label.getRuns()[0].style.lineHeight, (LineHeight{LineHeight::pixels, 31})) << "until the next text";
    label.SetText(L"x");
    EXPECT_EQ(label.getRuns()[0].style.lineHeight, LineHeight{});
}

TEST_F(HtmlStaticTest, ShowsNothingWithoutAFont) {
    HtmlProbe& label = makeLabel();
    label.SetText(L"<a href=x>words</a>");
    EXPECT_EQ(label.getRuns().size(), 1u);
    SendMessageW(label.getHandle(), WM_SETFONT, 0, 0);
    const NameListener listener;
    label.SetText(L"<a href=x>words</a>");
    EXPECT_THAT(label.getRuns(), IsEmpty());
    EXPECT_THAT(listener.names(), ElementsAre(std::pair(label.getHandle(), std::wstring(L"words"))));
    EXPECT_EQ(label.GetPreferredSize(), Size{});
    EXPECT_FALSE(isTabStop(label));
}

TEST_F(HtmlStaticTest, AlignsItsLinesByTheWindowsStyle) {
    for (const DWORD style : {DWORD{SS_LEFT}, DWORD{SS_CENTER}, DWORD{SS_RIGHT}}) {
        HtmlProbe& label = makeLabel({0, 0, 200, 100}, style);
        label.SetText(L"some <b>words</b>");
        const PlacedText &first = label.getRuns().at(0).placed.at(0), &last = label.getRuns().at(1).placed.at(0);
        const float right = 200 - last.x - last.width;
        EXPECT_EQ(first.x == 2, style == SS_LEFT);
        EXPECT_EQ(std::fabs(first.x - right) < 3, style == SS_CENTER);
        EXPECT_EQ(std::fabs(right) < 0.01f, style == SS_RIGHT);
    }
}

TEST_F(HtmlStaticTest, ATallTextHasAScrollTrackAtEverySize) {
    HtmlProbe& label = makeLabel({0, 0, 200, 60}, SS_RIGHT);
    label.setMarkup(fourLines);
    const RectF bounds = boundsOf(label.getRuns());
    EXPECT_GT(bounds.height, 60);
    const TrackState track = label.getScrollTrack().getState();
    EXPECT_EQ(label.getScrollTrack().getLineSize(), 20);
    EXPECT_EQ(track.maximum, static_cast<int32_t>(std::ceil(bounds.height - 60)) + 1);
    const PlacedText& word = label.getRuns().at(0).placed.at(0);
    EXPECT_FLOAT_EQ(word.x + word.width, 192) << "left of the track";
    EXPECT_FALSE(label.getScrollTrack().IsVisible()) << "shown by the paint";
    paint(label);
    EXPECT_TRUE(label.getScrollTrack().IsVisible());
    label.OnKeyDown(VK_END, 1, false, false);
    EXPECT_GT(label.getScrollTrack().getPosition(), 0);
    label.setMarkup(fourLines);
    EXPECT_EQ(label.getScrollTrack().getPosition(), 0) << "a new text begins at its top";

    // The same text needs no track in a larger window, and one again in a smaller window.
    label.SetPosition({0, 0, 150, 200}, SWP_NOZORDER);
    EXPECT_EQ(label.GetChildRect(label.getScrollTrack().getHandle()), (Rect{142, 0, 150, 200}));
    paint(label);
    EXPECT_FALSE(label.getScrollTrack().IsVisible());
    label.SetPosition({5, 5, 155, 205}, SWP_NOZORDER | SWP_NOSIZE);
    EXPECT_TRUE(isDirty(label)) << "its background has changed";
    paint(label);
    label.SetPosition({5, 5, 155, 55}, SWP_NOZORDER);
    EXPECT_TRUE(isDirty(label));
    EXPECT_EQ(label.getScrollTrack().getState().pageSize, 50);
    paint(label);
    EXPECT_TRUE(label.getScrollTrack().IsVisible());
}

TEST_F(HtmlStaticTest, DrawsEachRunInItsColour) {
    HtmlProbe& label = makeLabel({0, 0, 300, 60});
    label.SetText(L"<font color=\"#FF0000\">HEH</font> <a href=x>HEH</a> <font argb=\"#8000FF00\">HEH</font> HEH");
    const Color expected[] = {0xFFFF0000, palette::Blue[8], 0x8000FF00, 0xFFFFFFFF};
    const Drawn picture(label);
    ASSERT_EQ(label.getRuns().size(), 4u);
    for (size_t i = 0; i < 4; ++i) {
        const RectF place = coveredBy(label.getRuns()[i]);
        EXPECT_TRUE(alike(picture.strongest(place), expected[i])) << i;
    }
}

TEST_F(HtmlStaticTest, DrawsTheTextAtItsScrollPosition) {
    HtmlProbe& label = makeLabel({0, 0, 200, 40});
    label.SetDefaultLineHeight({LineHeight::pixels, 40});
    label.SetText(
        L"<font color=\"#FF0000\">HEH<br></font><font color=\"#00FF00\">HEH<br></font><font color=\"#0000FF\">HEH");
    const auto shown = [&] { return Drawn(label).strongest({0, 0, 190, 24}) & 0xFFFFFF; };
    EXPECT_EQ(shown(), 0xFF0000u);
    SendMessageW(label.getScrollTrack().getHandle(), TBM_SETPOS, TRUE, 40);
    EXPECT_EQ(shown(), 0x00FF00u);
    SendMessageW(label.getScrollTrack().getHandle(), TBM_SETPOS, TRUE, 80);
    EXPECT_EQ(label.getScrollTrack().getPosition(), label.getScrollTrack().getState().maximum) << "clamped";
    EXPECT_EQ(shown(), 0x0000FFu);
}

TEST(HtmlStaticWithoutMemory, CrashesTheThread) {
    // The first allocation stores the markup; the next ones convert it, parse it and collect its words.
    for (const int count : {2, 3, 4, 5})
        EXPECT_EQ(CrashingThread::run([count] {
                      HtmlStatic label(
                          CreateWindowW(L"STATIC", L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr));
                      const std::wstring markup(2000, L'w');
                      shortage = {GetCurrentThreadId(), count};
                      SendMessageW(label.getHandle(), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(markup.c_str()));
                      shortage = {};
                  }),
                  uncaughtExceptionCode)
            << count;
    shortage = {};
}

}  // namespace
}  // namespace pdx
