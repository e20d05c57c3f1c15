// Windows, and a receiver of accessible names, for the tests of the toolkit.
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

/// Records the accessible names that are published during its lifetime.
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

/// Dispatches messages until the condition holds; false when it does not within ten seconds.
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

/// Whether the window has something to paint.
inline bool isDirty(const Window& window) { return GetUpdateRect(window.getHandle(), nullptr, FALSE) != FALSE; }
inline void paint(const Window& window) { UpdateWindow(window.getHandle()); }

inline HWND makeChild(HWND parent, const wchar_t* windowClass, DWORD style, const Box& box) {
    return CreateWindowExW(0, windowClass, L"", WS_CHILD | style, box.x, box.y, box.width, box.height, parent, nullptr,
                           nullptr, nullptr);
}

/// A window that the test draws.
template <typename Base>
class Painted : public Base {
  public:
    using Base::Base;
    MessageResult Draw(Graphics& graphics) override {
        if (!painter) return unhandled();
        painter(graphics);
        return handled(1);
    }
    std::function<void(Graphics&)> painter;
};
using TestControl = Painted<Control>;

/// A dialog that the test draws. The destructor destroys its window too.
class TestDialog : public Painted<Dialog> {
  public:
    explicit TestDialog(uint16_t templateNumber = threeChildrenTwoRecords) : Painted(templateNumber) {}
    ~TestDialog() override {
        if (hwnd) DestroyWindow(hwnd);
    }
    MessageResult OnEraseBackground(WPARAM) override { return handled(1); }
    /// Makes and shows the dialog without the children of its template.
    void openEmpty() {
        Create({});
        for (const int32_t id : {11, 12, 13}) DestroyWindow(GetItem(id));
        SetPosition({50, 50, 450, 350}, SWP_NOZORDER | SWP_SHOWWINDOW);
    }
};

}  // namespace pdx::testing_support
