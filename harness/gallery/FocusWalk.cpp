#include "harness/gallery/FocusWalk.h"

#include <stdexcept>
#include <vector>

namespace pdx {
namespace {

using Json = nlohmann::json;

constexpr DWORD keyBound = 10000;  // milliseconds in which a key has to arrive
constexpr size_t mostStops = 20;

/// Runs the messages as the dialog's own loops do, until a key has come up.
void runUntilReleased(HWND dialog, WORD key) {
    MSG message;
    for (bool released = false; !released;) {
        while (!released && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            released = message.message == WM_KEYUP && message.wParam == key;
            if (IsDialogMessageW(dialog, &message)) continue;
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        if (!released && MsgWaitForMultipleObjects(0, nullptr, FALSE, keyBound, QS_ALLINPUT) == WAIT_TIMEOUT)
            throw std::runtime_error("a key did not arrive");
    }
}

INPUT keyInput(WORD key, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    return input;
}

/// A key press, with Shift held down if wanted, and all that follows from it.
void press(HWND dialog, WORD key, bool shift = false) {
    std::vector<INPUT> inputs;
    if (shift) inputs.push_back(keyInput(VK_SHIFT, 0));
    inputs.push_back(keyInput(key, 0));
    inputs.push_back(keyInput(key, KEYEVENTF_KEYUP));
    if (shift) inputs.push_back(keyInput(VK_SHIFT, KEYEVENTF_KEYUP));
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
    runUntilReleased(dialog, shift ? WORD{VK_SHIFT} : key);
}

int32_t focused() {
    const HWND window = GetFocus();
    return window ? GetDlgCtrlID(window) : 0;
}

int32_t differingPixels(const Snapshot& one, const Snapshot& other, const Box& part) {
    int32_t count = 0;
    for (int32_t y = part.y; y < part.y + part.height; ++y)
        for (int32_t x = part.x; x < part.x + part.width; ++x) count += one.GetPixel({x, y}) != other.GetPixel({x, y});
    return count;
}

/// From the focus where it is, key by key, until a control comes a second time.
Json walk(const GalleryDialog& dialog, bool backward, const std::function<void(int32_t)>& at) {
    Json stops = Json::array();
    if (backward) stops.push_back(focused());
    while (stops.size() < mostStops) {
        press(dialog.GetHandle(), VK_TAB, backward);
        const int32_t control = focused();
        const bool known = std::find(stops.begin(), stops.end(), control) != stops.end();
        stops.push_back(control);
        if (known) break;
        at(control);
    }
    return stops;
}

/// Pictures of a check box without and with the focus, both unchecked, and their difference.
int32_t changedWhenUnchecked(const GalleryDialog& dialog, int32_t control, const Box& place) {
    const HWND window = dialog.GetHandle();
    press(window, VK_SPACE);
    const Snapshot with(window);
    ::SetFocus(window);
    const Snapshot without(window);
    ::SetFocus(dialog.GetItem(control));
    press(window, VK_SPACE);
    return differingPixels(without, with, place);
}

}  // namespace

Json walkFocus(const GalleryDialog& dialog, const FocusVisitor& visitor) {
    const HWND window = dialog.GetHandle();
    SetForegroundWindow(window);
    ::SetFocus(window);
    const Snapshot without(window);
    Json changed = Json::object(), toggled = Json::array();
    Json forward = walk(dialog, false, [&](int32_t control) {
        const Snapshot with(window);
        visitor(control, with);
        const Box place = boxOf(dialog.GetChildRectById(control));
        int32_t pixels = differingPixels(without, with, place);
        const auto* check = dynamic_cast<const Checkbox*>(dialog.widget(control));
        if (check && check->IsChecked()) {
            pixels = changedWhenUnchecked(dialog, control, place);
            toggled.push_back(control);
            if (!check->IsChecked()) throw std::runtime_error("the space bar does not check a box");
        }
        changed[std::to_string(control)] = pixels;
    });
    Json backward = walk(dialog, true, [](int32_t) {});
    return {{"forward", forward}, {"backward", backward}, {"changed", changed}, {"toggled", toggled}};
}

}  // namespace pdx
