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

/// The nearest (or the farthest) sibling that Tab stops at, in one direction; null for none.
HWND tabStopFrom(HWND window, UINT direction, bool farthest) {
    HWND found = nullptr;
    while ((farthest || !found) && (window = GetWindow(window, direction)) != nullptr)
        if (isTabStop(window)) found = window;
    return found;
}

}  // namespace

const TextRun* HtmlStatic::HitTest(int32_t x, int32_t y) const {
    return linkAt(runs, static_cast<float>(x), static_cast<float>(y) + static_cast<float>(scrollTrack->GetPosition()));
}

MessageResult HtmlStatic::HandleMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    // Two messages that no other widget asks for. A press does not outlive its capture, nor the focus line the focus.
    if (message == WM_CAPTURECHANGED) pressedRun = nullptr;
    if (message == WM_KILLFOCUS) Invalidate();
    return Static::HandleMessage(message, wparam, lparam);
}

MessageResult HtmlStatic::OnNcHitTest(int32_t, int32_t) { return handled(HTCLIENT); }

MessageResult HtmlStatic::OnSetCursor(WPARAM window, int32_t, UINT) {
    POINT cursor{};
    if (reinterpret_cast<HWND>(window) != hwnd || !GetCursorPos(&cursor)) return unhandled();
    ScreenToClient(hwnd, &cursor);
    OnMouseMove(cursor.x, cursor.y);
    // Without a link the native control sets its arrow, whatever the cursor was outside.
    if (!hoveredRun) return unhandled();
    SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(32649)));  // the hand
    return handled(1);
}

MessageResult HtmlStatic::OnMouseMove(int32_t x, int32_t y) {
    const TextRun* hit = HitTest(x, y);
    // A pressed link keeps the others quiet until it is let go.
    if (pressedRun && hit != pressedRun) hit = nullptr;
    if (hit != hoveredRun) {
        hoveredRun = hit;
        SetCursor(LoadCursorW(nullptr, hit ? MAKEINTRESOURCEW(32649) : MAKEINTRESOURCEW(32512)));  // hand or arrow
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
    const TrackState track = scrollTrack->GetState();
    const int32_t position = track.clamped(wheeledPosition(track.position, scrollTrack->GetLineSize(), delta));
    if (position != track.position) {
        SendMessageW(scrollTrack->GetHandle(), setPosNotify, 0, position);
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
        // Which has ended the press; it lasts until its link is told.
        pressedRun = pressed;
        if (HitTest(x, y) == pressedRun) ActivateLink();
    }
    pressedRun = nullptr;
    return handled();
}

void HtmlStatic::ActivateLink() {
    // A copy, for the parent may set another text before it has read the link. Enter comes here with no press under
    // way, hence no link: the fault that follows is meant to be, see OnKeyDown.
    const std::wstring href = pressedRun->style.href;
    const auto id = static_cast<UINT_PTR>(GetDlgCtrlID(hwnd));
    const LinkNotification notification{.hwndFrom = hwnd, .idFrom = id, .code = linkActivated, .href = href.c_str()};
    SendMessageW(GetParent(hwnd), WM_NOTIFY, id, reinterpret_cast<LPARAM>(&notification));
}

MessageResult HtmlStatic::OnVScroll(int32_t, int32_t, LPARAM) {
    Invalidate();
    return handled();
}

MessageResult HtmlStatic::OnGetDlgCode(WPARAM) { return handled(DLGC_STATIC | DLGC_WANTALLKEYS); }

MessageResult HtmlStatic::OnKeyDown(WPARAM key, int32_t, bool, bool) {
    switch (key) {
        case VK_TAB:
            if (FocusNextLink())
                ScrollIntoView();
            else
                FocusNextControl();
            Invalidate();
            return handled();
        case VK_RETURN:
            // Looks like a mistake and is settled: the link that is followed is the pressed one and no other, so Enter
            // on a link that has the focus finds none and faults, which the crash report tells of. Tab shows a link,
            // the mouse follows it.
            if (focusedRun < runs.size()) ActivateLink();
            return handled();
        case VK_PRIOR:
            scrollTrack->PageUp();
            return handled();
        case VK_NEXT:
            scrollTrack->PageDown();
            return handled();
        case VK_END:
            scrollTrack->End();
            return handled();
        case VK_HOME:
            scrollTrack->Home();
            return handled();
        case VK_UP:
            scrollTrack->LineUp();
            return handled();
        case VK_DOWN:
            scrollTrack->LineDown();
            return handled();
        default:
            return unhandled();
    }
}

MessageResult HtmlStatic::OnSetFocus(WPARAM) {
    if (focusedRun < runs.size() || FocusNextLink()) {
        ScrollIntoView();
    } else if (!scrollTrack->IsVisible() && !passingFocus) {
        // Two labels with nothing to show the focus on would pass it to each other for ever.
        passingFocus = true;
        FocusNextControl();
        passingFocus = false;
    }
    Invalidate();
    return handled();
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
        FocusNextLink();
        return;
    }
    // The dialog manager's way makes a button that gets the focus the one that Enter presses.
    SendMessageW(GetParent(hwnd), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(next), TRUE);
    if (GetFocus() != next) SetFocus(next);
}

void HtmlStatic::ScrollIntoView() {
    if (!scrollTrack->IsVisible()) return;
    const auto position =
        positionToShow(coveredBy(runs[focusedRun]), scrollTrack->GetPosition(), GetClientSize().height);
    if (position) scrollTrack->SetPosition(*position);
}

}  // namespace pdx
