// Windows and listeners that the toolkit's tests share.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ui/toolkit/AccessibleName.h"
#include "ui/toolkit/Control.h"
#include "ui/toolkit/Dialog.h"
#include "ui/toolkit/Painting.h"

namespace pdx::testing_support {

/// Keeps the accessible names that are published while it lives.
class NameListener {
  public:
    NameListener() { g_accessibleNames.set(sink); }
    ~NameListener() { g_accessibleNames.clear(); }
    NameListener(const NameListener&) = delete;
    NameListener& operator=(const NameListener&) = delete;
    [[nodiscard]] const std::vector<std::pair<HWND, std::wstring>>& names() const { return sink->names; }

  private:
    struct Sink : AccessibleNames {
        void publish(HWND window, const std::wstring& name) override { names.emplace_back(window, name); }
        std::vector<std::pair<HWND, std::wstring>> names;
    };
    std::shared_ptr<Sink> sink = std::make_shared<Sink>();
};

/// The number of the template in tests.rc.
inline constexpr uint16_t threeChildrenTwoRecords = 201;

/// Gives messages out until the condition holds; whether it did within some seconds.
inline bool pumpUntil(const std::function<bool()>& holds) {
    const ULONGLONG end = GetTickCount64() + 10'000;
    for (ULONGLONG now = 0; !holds() && (now = GetTickCount64()) < end;) {
        MSG message;
        if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
        else
            MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(end - now), QS_ALLINPUT);
    }
    return holds();
}

using Painter = std::function<void(Graphics&)>;

/// A dialog that is painted by the test and goes with the object.
class TestDialog : public Dialog {
  public:
    explicit TestDialog(uint16_t templateNumber = threeChildrenTwoRecords) : Dialog(templateNumber) {}
    ~TestDialog() override {
        if (hwnd) DestroyWindow(hwnd);
    }
    MessageResult OnEraseBackground(WPARAM) override { return handled(1); }
    MessageResult Draw(Graphics& graphics) override {
        if (!painter) return unhandled();
        painter(graphics);
        return handled(1);
    }
    Painter painter;
};

/// A control of a dialog that is painted by the test.
class TestControl : public Control {
  public:
    using Control::Control;
    const char* GetWindowClassName() const override { return "STATIC"; }
    MessageResult Draw(Graphics& graphics) override {
        if (!painter) return unhandled();
        painter(graphics);
        return handled(1);
    }
    Painter painter;
};

}  // namespace pdx::testing_support
