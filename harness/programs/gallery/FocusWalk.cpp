#include "harness/programs/gallery/FocusWalk.h"

#include <stdexcept>
#include <vector>

namespace pdx {
namespace {

using Json = nlohmann::json;

constexpr DWORD keyBound = 10000;  // milliseconds in which a key has to arrive
constexpr size_t mostStops = 20;

/// Runs the messages as the dialog's own loops do, until a key is released.
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

int32_t differingPixels(const Snapshot& one, const Snapshot& other) {
    const Size size = one.getSize();
    int32_t count = 0;
    for (int32_t y = 0; y < size.height; ++y)
        for (int32_t x = 0; x < size.width; ++x) count += one.getPixel({x, y}) != other.getPixel({x, y});
    return count;
}

/// From the present focus, key by key, until a control gets it a second time.
Json walk(const GalleryDialog& dialog, bool backward, const std::function<void(int32_t)>& at) {
    Json stops = Json::array();
    if (backward) stops.push_back(focused());
    while (stops.size() < mostStops) {
        press(dialog.getHandle(), VK_TAB, backward);
        const int32_t control = focused();
        const bool known = std::find(stops.begin(), stops.end(), control) != stops.end();
        stops.push_back(control);
        if (known) break;
        if (control) at(control);  // else the dialog itself has the focus
    }
    return stops;
}

/// How many pixels of a control differ from a picture with the focus; the focus is set again.
int32_t changedBy(const GalleryDialog& dialog, HWND control, const Snapshot& with) {
    ::SetFocus(dialog.getHandle());
    const Snapshot without(control);
    ::SetFocus(control);
    return differingPixels(without, with);
}

/// The same for a check box, which is unchecked for it.
int32_t changedWhenUnchecked(const GalleryDialog& dialog, HWND control) {
    press(dialog.getHandle(), VK_SPACE);
    const int32_t pixels = changedBy(dialog, control, Snapshot(control));
    press(dialog.getHandle(), VK_SPACE);
    return pixels;
}

}  // namespace

Json walkFocus(const GalleryDialog& dialog, const FocusVisitor& visitor) {
    SetForegroundWindow(dialog.getHandle());
    ::SetFocus(dialog.getHandle());
    Json changed = Json::object(), toggled = Json::array();
    Json forward = walk(dialog, false, [&](int32_t id) {
        const HWND control = dialog.GetItem(id);
        const Snapshot with(control);
        visitor(id, with);
        const auto* check = dynamic_cast<const Checkbox*>(dialog.widget(id));
        if (!check || !check->IsChecked()) {
            changed[std::to_string(id)] = changedBy(dialog, control, with);
            return;
        }
        changed[std::to_string(id)] = changedWhenUnchecked(dialog, control);
        toggled.push_back(id);
        if (!check->IsChecked()) throw std::runtime_error("the space bar does not check a box");
    });
    Json backward = walk(dialog, true, [](int32_t) {});
    return {{"forward", forward}, {"backward", backward}, {"changed", changed}, {"toggled", toggled}};
}

}  // namespace pdx
