// A dialog with labels of marked-up text.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "tests/ui/toolkit/Pixels.h"
#include "tests/ui/toolkit/TestWindows.h"
#include "ui/toolkit/HtmlStatic.h"

namespace pdx::testing_support {

class HtmlProbe : public HtmlStatic {
  public:
    using HtmlStatic::HtmlStatic;
    void setMarkup(const char* markup) { SetText(std::wstring(markup, markup + strlen(markup))); }
    /// The first row of a run, from its top, with ink from end to end; 0 for none.
    [[nodiscard]] int32_t lineIn(size_t run) {
        const Drawn picture(*this);
        const RectF place = coveredBy(getRuns().at(run));
        const auto left = static_cast<int32_t>(place.x) + 1, right = static_cast<int32_t>(place.x + place.width) - 1;
        const auto top = static_cast<int32_t>(place.y);
        for (int32_t y = top + 1; y < static_cast<int32_t>(place.y + place.height); ++y) {
            int32_t x = left;
            while (x < right && picture.at(x, y) >> 24 > 0x40) ++x;
            if (x == right) return y - top;
        }
        return 0;
    }
};

/// A dialog that records the links that are followed in it.
class LinkedDialog : public TestDialog {
  public:
    MessageResult OnNotify(LPARAM notification) override {
        const auto& header = *reinterpret_cast<const NMHDR*>(notification);
        if (header.code != linkActivated) return unhandled();
        if (onLink) onLink();
        links.emplace_back(reinterpret_cast<const LinkNotification*>(notification)->href);
        return handled();
    }
    /// The links since the last call.
    std::vector<std::wstring> take() { return std::exchange(links, {}); }
    std::function<void()> onLink;

  private:
    std::vector<std::wstring> links;
};

class HtmlStaticTest : public ::testing::Test {
  protected:
    void SetUp() override {
        LoadPrivateFonts();
        dialog.openEmpty();
    }
    void TearDown() override { holdShift(false); }

    /// A visible label with a font of 16 pixels and lines of 26; the fixture owns it.
    HtmlProbe& makeLabel(const Rect& place = {0, 0, 200, 100}, DWORD style = 0) {
        labels.push_back(
            std::make_unique<HtmlProbe>(makeChild(dialog.getHandle(), L"STATIC", WS_VISIBLE | style, boxOf(place))));
        labels.back()->SetFont(CreateFontByName(textFace, 16, fontRegular));
        labels.back()->SetDefaultLineHeight({LineHeight::pixels, 26});
        return *labels.back();
    }
    HtmlProbe& makeLabel(const char* markup, const Rect& place) {
        HtmlProbe& label = makeLabel(place);
        label.setMarkup(markup);
        return label;
    }
    HWND makeButton(DWORD style = WS_TABSTOP) {
        return makeChild(dialog.getHandle(), L"BUTTON", WS_VISIBLE | style, {300, 0, 50, 20});
    }
    static bool isTabStop(const Window& window) { return (window.GetStyle() & WS_TABSTOP) != 0; }
    /// Sets what GetKeyState returns on this thread.
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
