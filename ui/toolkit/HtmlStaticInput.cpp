// Links, scrolling and focus of a marked-up text.
#include "ui/toolkit/HtmlStatic.h"

namespace pdx {

static_assert(offsetof(LinkNotification, idFrom) == offsetof(NMHDR, idFrom) &&
              offsetof(LinkNotification, code) == offsetof(NMHDR, code));

namespace {

bool isShiftDown() { return GetKeyState(VK_SHIFT) < 0; }

bool isTabStop(HWND window) {
    constexpr LONG wanted = WS_VISIBLE | WS_TABSTOP;
    return (GetWindowLongW(window, GWL_STYLE) & wanted) == wanted;
}

/// The nearest (or farthest) sibling in one direction that is a tab stop; null for none.
HWND tabStopFrom(HWND window, UINT direction, bool farthest) {
    HWND found = nullptr;
    while ((farthest || !found) && (window = GetWindow(window, direction)) != nullptr)
        if (isTabStop(window)) found = window;
    return found;
}

constexpr struct {
    WPARAM key;
    void (Trackbar::*scroll)();
} scrollKeys[] = {
    {VK_PRIOR, &Trackbar::pageUp}, {VK_NEXT, &Trackbar::pageDown}, {VK_HOME, &Trackbar::home},
    {VK_END, &Trackbar::end},      {VK_UP, &Trackbar::lineUp},     {VK_DOWN, &Trackbar::lineDown},
};

}  // namespace

const TextRun* HtmlStatic::HitTest(int32_t x, int32_t y) const {
    return linkAt(runs, static_cast<float>(x), static_cast<float>(y) + static_cast<float>(scrollTrack->getPosition()));
}

MessageResult HtmlStatic::HandleMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    // Window has no handlers for these two. A press ends with its capture, and the underline with the focus.
    if (message == WM_CAPTURECHANGED) pressedRun = nullptr;
    if (message == WM_KILLFOCUS) Invalidate();
    return Static::HandleMessage(message, wparam, lparam);
}

MessageResult HtmlStatic::OnSetCursor(WPARAM window, int32_t, UINT) {
    POINT cursor{};
    if (reinterpret_cast<HWND>(window) != hwnd || !GetCursorPos(&cursor)) return unhandled();
    ScreenToClient(hwnd, &cursor);
    OnMouseMove(cursor.x, cursor.y);
    // Beside a link the native control sets the arrow, whatever cursor another window has set.
    return hoveredRun ? showCursor(handCursor) : unhandled();
}

MessageResult HtmlStatic::OnMouseMove(int32_t x, int32_t y) {
    const TextRun* hit = HitTest(x, y);
    // While a link is pressed no other one is highlighted.
    if (pressedRun && hit != pressedRun) hit = nullptr;
    if (hit != hoveredRun) {
        hoveredRun = hit;
        showCursor(hit ? handCursor : arrowCursor);
        Invalidate();
    }
    return handled();
}

MessageResult HtmlStatic::OnMouseLeave() {
    if (hoveredRun) Invalidate();
    hoveredRun = nullptr;
    return unhandled();
}

MessageResult HtmlStatic::OnMouseWheel(int32_t delta, uint32_t, int32_t, int32_t) {
    if (!scrollTrack->IsVisible()) return unhandled();
    const TrackState track = scrollTrack->getState();
    const int32_t position = track.clamped(wheeledPosition(track.position, scrollTrack->getLineSize(), delta));
    if (position != track.position) {
        SendMessageW(scrollTrack->getHandle(), setPosNotify, 0, position);
        scrollTrack->Invalidate();
        Invalidate();
    }
    return handled();
}

MessageResult HtmlStatic::OnLButtonDown(WPARAM, int32_t x, int32_t y) {
    pressedRun = HitTest(x, y);
    if (pressedRun) SetCapture(hwnd);
    return handled();
}

MessageResult HtmlStatic::OnLButtonUp(WPARAM, int32_t x, int32_t y) {
    if (const TextRun* pressed = pressedRun) {
        ReleaseCapture();
        // WM_CAPTURECHANGED cleared pressedRun; restore it until the link is reported.
        pressedRun = pressed;
        if (HitTest(x, y) == pressedRun) ActivateLink();
    }
    pressedRun = nullptr;
    return handled();
}

void HtmlStatic::ActivateLink() {
    // A copy, because the parent may set another text before it reads the link. Without a press, after Enter, this line
    // faults by design: see OnKeyDown.
    const std::wstring href = pressedRun->style.href;
    const auto id = static_cast<UINT_PTR>(GetDlgCtrlID(hwnd));
    const LinkNotification notification{.hwndFrom = hwnd, .idFrom = id, .code = linkActivated, .href = href.c_str()};
    SendMessageW(GetParent(hwnd), WM_NOTIFY, id, reinterpret_cast<LPARAM>(&notification));
}

MessageResult HtmlStatic::OnKeyDown(WPARAM key, int32_t, bool, bool) {
    switch (key) {
        case VK_TAB:
            if (FocusNextLink())
                ScrollIntoView();
            else
                FocusNextControl();
            return repaint(handled());
        case VK_RETURN:
            // Looks like a mistake, but is settled: only a pressed link is followed. Enter on a focused link finds no
            // pressed one and faults, which becomes a crash report. Tab shows a link; the mouse follows it.
            if (focusedRun < runs.size()) ActivateLink();
            return handled();
    }
    for (const auto& row : scrollKeys)
        if (row.key == key) {
            (*scrollTrack.*row.scroll)();
            return handled();
        }
    return unhandled();
}

MessageResult HtmlStatic::OnSetFocus(WPARAM) {
    if (focusedRun < runs.size() || FocusNextLink()) {
        ScrollIntoView();
    } else if (!scrollTrack->IsVisible() && !passingFocus) {
        // Two labels without links would pass the focus to each other for ever.
        passingFocus = true;
        FocusNextControl();
        passingFocus = false;
    }
    return repaint(handled());
}

bool HtmlStatic::FocusNextLink() {
    if (runs.empty()) return false;
    focusedRun = nextLink(runs, focusedRun, isShiftDown());
    return focusedRun < runs.size();
}

void HtmlStatic::FocusNextControl() {
    const UINT onward = isShiftDown() ? GW_HWNDPREV : GW_HWNDNEXT;
    const UINT back = isShiftDown() ? GW_HWNDNEXT : GW_HWNDPREV;
    HWND next = tabStopFrom(hwnd, onward, false);
    if (!next) next = tabStopFrom(hwnd, back, true);
    if (!next) {
        FocusNextLink();  // the only stop: begins again with its own first link
        return;
    }
    // Through the dialog manager, so that a button with the focus is also the one that Enter presses.
    SendMessageW(GetParent(hwnd), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(next), TRUE);
    if (GetFocus() != next) SetFocus(next);
}

void HtmlStatic::ScrollIntoView() {
    if (!scrollTrack->IsVisible()) return;
    const auto position =
        positionToShow(coveredBy(runs[focusedRun]), scrollTrack->getPosition(), GetClientSize().height);
    if (position) scrollTrack->SetPosition(*position);
}

}  // namespace pdx
