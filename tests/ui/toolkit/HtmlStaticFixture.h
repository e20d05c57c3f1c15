// A dialog with labels of marked-up text for the tests.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "tests/ui/toolkit/TestWindows.h"
#include "ui/toolkit/HtmlStatic.h"

namespace pdx::testing_support {

/// Where a text lies in its window.
struct Place {
    std::wstring text;
    float x;
    float y;
    bool operator==(const Place&) const = default;
    friend void PrintTo(const Place& place, std::ostream* out) {
        *out << std::string(place.text.begin(), place.text.end()) << " at " << place.x << " " << place.y;
    }
};

class HtmlProbe : public HtmlStatic {
  public:
    using HtmlStatic::GetRuns;
    using HtmlStatic::GetScrollTrack;
    using HtmlStatic::HtmlStatic;
    void SetMarkup(const char* markup) { SetText(std::wstring(markup, markup + strlen(markup))); }
    [[nodiscard]] std::vector<Place> places() const {
        std::vector<Place> places;
        for (const TextRun& run : GetRuns())
            for (const PlacedText& placed : run.placed) places.push_back({placed.text, placed.x, placed.y});
        return places;
    }
};

/// What a label draws, on a clear ground.
struct Picture {
    explicit Picture(HtmlProbe& label) : size(label.GetClientSize()), bitmap(size) {
        Graphics graphics(bitmap);
        ApplyQuality(graphics);
        result = label.Draw(graphics);
        EXPECT_EQ(graphics.lastStatus(), Gdiplus::Ok);
    }
    /// The pixel that covers most in a part of it.
    [[nodiscard]] Color strongest(const RectF& part) const {
        Color found = 0;
        for (auto y = static_cast<int32_t>(part.y);
             y < std::min(size.height, static_cast<int32_t>(part.y + part.height)); ++y)
            for (auto x = static_cast<int32_t>(part.x);
                 x < std::min(size.width, static_cast<int32_t>(part.x + part.width)); ++x)
                if (const Color pixel = bitmap.GetPixel({x, y}); pixel >> 24 > found >> 24) found = pixel;
        return found;
    }
    /// What was drawn on; of no width when nothing was.
    [[nodiscard]] Box ink() const {
        Rect ink = {size.width, size.height, 0, 0};
        for (int32_t y = 0; y < size.height; ++y)
            for (int32_t x = 0; x < size.width; ++x)
                if (bitmap.GetPixel({x, y}) >> 24 > 0x40)
                    ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
                           std::max(ink.bottom, y + 1)};
        return ink.right == 0 ? Box{} : boxOf(ink);
    }
    /// How far below the top of a run is the first row that is drawn on from end to end; 0 for none.
    [[nodiscard]] int32_t lineIn(const HtmlProbe& label, size_t run) const {
        const RectF place = coveredBy(label.GetRuns().at(run));
        const auto left = static_cast<int32_t>(place.x) + 1, right = static_cast<int32_t>(place.x + place.width) - 1;
        const auto top = static_cast<int32_t>(place.y);
        for (int32_t y = top + 1; y < static_cast<int32_t>(place.y + place.height); ++y) {
            int32_t x = left;
            while (x < right && bitmap.GetPixel({x, y}) >> 24 > 0x40) ++x;
            if (x == right) return y - top;
        }
        return 0;
    }

    Size size;
    Bitmap bitmap;
    MessageResult result;
};

/// A dialog that notes the links that are followed in it.
class LinkedDialog : public TestDialog {
  public:
    MessageResult HandleMessage(UINT message, WPARAM wparam, LPARAM lparam) override {
        if (message == WM_NOTIFY) notifiedId = wparam;
        return TestDialog::HandleMessage(message, wparam, lparam);
    }
    MessageResult OnNotify(LPARAM notification) override {
        const auto& header = *reinterpret_cast<const NMHDR*>(notification);
        if (header.code != linkActivated) return unhandled();
        if (onLink) onLink();
        from = header.hwndFrom;
        idFrom = header.idFrom;
        links.emplace_back(reinterpret_cast<const LinkNotification*>(notification)->href);
        return handled();
    }
    std::function<void()> onLink;
    std::vector<std::wstring> links;
    HWND from = nullptr;
    UINT_PTR idFrom = 0;
    WPARAM notifiedId = 0;
};

class HtmlStaticTest : public ::testing::Test {
  protected:
    void SetUp() override {
        LoadPrivateFonts();
        ASSERT_NE(dialog.Create({}), nullptr);
        for (const int32_t id : {11, 12, 13}) DestroyWindow(dialog.GetItem(id));
        dialog.SetPosition({50, 50, 450, 350}, SWP_NOZORDER | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    }
    void TearDown() override { holdShift(false); }

    /// A visible label with a font of 16 pixels and lines of 26, which lives as long as the test.
    HtmlProbe& makeLabel(const Rect& place = {0, 0, 200, 100}, DWORD style = 0, INT_PTR id = 77) {
        const HWND window =
            CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE | style, place.left, place.top, place.width(),
                            place.height(), dialog.GetHandle(), reinterpret_cast<HMENU>(id), nullptr, nullptr);
        labels.push_back(std::make_unique<HtmlProbe>(window));
        labels.back()->SetFont(CreateFontByName(textFace, 16, fontRegular));
        labels.back()->SetDefaultLineHeight({LineHeight::pixels, 26});
        return *labels.back();
    }
    HWND makeButton(DWORD style = WS_TABSTOP) {
        return CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE | style, 300, 0, 50, 20, dialog.GetHandle(),
                               nullptr, nullptr, nullptr);
    }
    static bool isTabStop(const Window& window) { return (window.GetStyle() & WS_TABSTOP) != 0; }
    static RectF measured(std::wstring_view text, float size, int32_t style) {
        const auto font = CreateFontByName(textFace, size, style);
        Graphics graphics(GetDesktopWindow());
        ApplyQuality(graphics);
        const StringFormat format = CreateTextFormat();
        return graphics.MeasureString(text, font.get(), {}, &format);
    }
    /// What GetKeyState tells this thread.
    static void holdShift(bool down) {
        BYTE keys[256] = {};
        GetKeyboardState(keys);
        keys[VK_SHIFT] = down ? 0x80 : 0;
        SetKeyboardState(keys);
    }

    LinkedDialog dialog;
    std::vector<std::unique_ptr<HtmlProbe>> labels;
};

}  // namespace pdx::testing_support
