#include "ui/toolkit/Trackbar.h"

#include <commctrl.h>

#include "ui/toolkit/Painting.h"

namespace pdx {
namespace {

constexpr int32_t thumbRadius = 2;
constexpr Color thumbColor = palette::Grey[7];

int32_t ask(HWND window, UINT message) { return static_cast<int32_t>(SendMessageW(window, message, 0, 0)); }

}  // namespace

TrackState Trackbar::getState() const {
    return {.vertical = (GetStyle() & TBS_VERT) != 0,
            .client = GetClientSize(),
            .position = ask(hwnd, TBM_GETPOS),
            .minimum = ask(hwnd, TBM_GETRANGEMIN),
            .maximum = ask(hwnd, TBM_GETRANGEMAX),
            .pageSize = ask(hwnd, TBM_GETPAGESIZE)};
}

int32_t Trackbar::getPosition() const { return ask(hwnd, TBM_GETPOS); }
int32_t Trackbar::getLineSize() const { return ask(hwnd, TBM_GETLINESIZE); }

void Trackbar::SetRange(int32_t minimum, int32_t maximum) {
    // The message that sets both ends at once has only 16 bits for each.
    SendMessageW(hwnd, TBM_SETRANGEMIN, FALSE, minimum);
    SendMessageW(hwnd, TBM_SETRANGEMAX, TRUE, maximum);
}
void Trackbar::SetPosition(int32_t position) { SendMessageW(hwnd, TBM_SETPOS, TRUE, position); }
void Trackbar::SetLineSize(int32_t size) { SendMessageW(hwnd, TBM_SETLINESIZE, 0, size); }
void Trackbar::SetPageSize(int32_t size) { SendMessageW(hwnd, TBM_SETPAGESIZE, 0, size); }

void Trackbar::notify(int32_t code) {
    const TrackState track = getState();
    PostMessageW(GetParent(hwnd), track.vertical ? WM_VSCROLL : WM_HSCROLL,
                 static_cast<WPARAM>(static_cast<uint32_t>(track.position) << 16 | static_cast<uint32_t>(code)),
                 reinterpret_cast<LPARAM>(hwnd));
}

void Trackbar::SetPositionAndNotify(int64_t position, int32_t code) {
    const TrackState track = getState();
    const int32_t wanted = track.clamped(position);
    if (wanted == track.position) return;
    SetPosition(wanted);
    notify(code);
}

void Trackbar::home() { SetPositionAndNotify(getState().minimum, TB_TOP); }
void Trackbar::end() { SetPositionAndNotify(getState().maximum, TB_BOTTOM); }
void Trackbar::lineUp() { SetPositionAndNotify(int64_t{getPosition()} - getLineSize(), TB_LINEUP); }
void Trackbar::lineDown() { SetPositionAndNotify(int64_t{getPosition()} + getLineSize(), TB_LINEDOWN); }
void Trackbar::pageUp() { SetPositionAndNotify(int64_t{getPosition()} - getState().pageSize, TB_PAGEUP); }
void Trackbar::pageDown() { SetPositionAndNotify(int64_t{getPosition()} + getState().pageSize, TB_PAGEDOWN); }

MessageResult Trackbar::OnLButtonDown(WPARAM, int32_t x, int32_t y) {
    const TrackState track = getState();
    const Box thumb = thumbBox(track);
    const int32_t along = track.vertical ? y : x;
    const int32_t start = track.vertical ? thumb.y : thumb.x;
    const int32_t size = track.vertical ? thumb.height : thumb.width;
    if (along < start) {
        pageUp();
    } else if (along >= start + size) {
        pageDown();
    } else {
        SetCapture(hwnd);
        dragging = true;
        dragAnchor = along;
        dragStartPosition = track.position;
    }
    return handled();
}

MessageResult Trackbar::OnMouseMove(int32_t x, int32_t y) {
    // Another window may have taken the mouse capture during a drag.
    if (dragging && GetCapture() != hwnd) dragging = false;
    if (!dragging) return unhandled();
    const TrackState track = getState();
    SetPositionAndNotify(draggedPosition(track, dragStartPosition, (track.vertical ? y : x) - dragAnchor),
                         TB_THUMBTRACK);
    return handled();
}

MessageResult Trackbar::OnLButtonUp(WPARAM, int32_t, int32_t) {
    if (!dragging) return unhandled();
    ReleaseCapture();
    dragging = false;
    notify(TB_THUMBPOSITION);
    return handled();
}

MessageResult Trackbar::OnMouseWheel(int32_t delta, uint32_t, int32_t, int32_t) {
    SetPositionAndNotify(wheeledPosition(getPosition(), getLineSize(), delta), delta < 0 ? TB_LINEDOWN : TB_LINEUP);
    return handled();
}

MessageResult Trackbar::OnUserMessage(UINT message, WPARAM, LPARAM lparam) {
    // Wine's native control does not know this message, and that of Windows notifies the parent.
    if (message == setPosNotify) {
        SetPosition(static_cast<int32_t>(lparam));
        return handled();
    }
    if ((message >= TBM_SETPOS && message <= TBM_SETRANGEMAX) || message == TBM_SETPAGESIZE) Invalidate();
    return unhandled();
}

MessageResult Trackbar::Draw(Graphics& graphics) {
    graphics.fillPath(Brush(thumbColor), CreateRoundedPath(thumbBox(getState()), thumbRadius));
    return handled(1);
}

}  // namespace pdx
