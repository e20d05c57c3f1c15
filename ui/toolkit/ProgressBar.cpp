#include "ui/toolkit/ProgressBar.h"

#include <commctrl.h>

#include <utility>

#include "ui/toolkit/Painting.h"
#include "ui/toolkit/rules/ProgressShape.h"

namespace pdx {
namespace {

constexpr UINT_PTR marqueeTimer = 100;
constexpr UINT defaultPeriodMs = 30;

}  // namespace

ProgressBar::ProgressBar(HWND window) : Control(window), marqueePeriodMs(defaultPeriodMs) {
    marquee = window && (GetStyle() & PBS_MARQUEE);
    if (marquee) startTimer();
}

void ProgressBar::startTimer() {
    if (IsVisible()) SetTimer(marqueeTimer, marqueePeriodMs);
}

void ProgressBar::setMarquee(bool on) {
    marquee = on;
    chunks = {};
    if (on)
        startTimer();
    else
        KillTimer(marqueeTimer);
    // The native control repaints for a new position only, and the first position may equal the one it holds.
    Invalidate();
}

MessageResult ProgressBar::OnUserMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == PBM_SETPOS && marquee) setMarquee(false);
    if (message != PBM_SETMARQUEE) return unhandled();
    marqueePeriodMs = lparam ? static_cast<UINT>(lparam) : defaultPeriodMs;
    setMarquee(wparam != 0);
    // Not passed to the native control: Wine's would start a second timer, and each of the two would paint.
    return handled(TRUE);
}

MessageResult ProgressBar::OnWindowPosChanged(LPARAM position) {
    const UINT flags = reinterpret_cast<const WINDOWPOS*>(position)->flags;
    if (marquee && (flags & SWP_SHOWWINDOW)) {
        chunks = {};
        // Without the check of startTimer(): a bar in a hidden dialog is not visible yet.
        SetTimer(marqueeTimer, marqueePeriodMs);
    }
    if (marquee && (flags & SWP_HIDEWINDOW)) KillTimer(marqueeTimer);
    return unhandled();
}

MessageResult ProgressBar::OnTimer(WPARAM) {
    if (!marquee) return handled();
    const Size client = GetClientSize();
    const auto before = std::exchange(chunks, marqueeChunks(client, GetTickCount64()));
    if (before[0].width != chunks[0].width) {
        Invalidate();
        return handled();
    }
    for (const Box& part : movedParts(before, chunks, client)) {
        const Rect moved = {part.x, part.y, part.x + part.width, part.y + part.height};
        if (part.width > 0) Invalidate(&moved);
    }
    return handled();
}

MessageResult ProgressBar::Draw(Graphics& graphics) {
    const Size client = GetClientSize();
    const int32_t radius = client.height / 2;
    const Box whole = {0, 0, client.width, client.height};
    const Brush track(trackColor);
    // Anchored to the whole bar: a chunk shows the part of the gradient at its place.
    const Brush gradient(whole, gradientStart, gradientEnd);
    const Path outline = CreateRoundedPath(whole, radius);
    // Filled before it becomes the clip: a clip's edge is not anti-aliased.
    graphics.fillPath(track, outline);
    if (marquee) {
        graphics.setClip(outline);
        if (chunks[0].width == 0) chunks = marqueeChunks(client, GetTickCount64());
        for (const Box& chunk : chunks)
            if (isInView(chunk, client)) graphics.fillPath(gradient, CreateRoundedPath(chunk, radius));
        return handled(1);
    }
    PBRANGE range{};
    SendMessageW(hwnd, PBM_GETRANGE, TRUE, reinterpret_cast<LPARAM>(&range));
    const auto position = static_cast<int32_t>(SendMessageW(hwnd, PBM_GETPOS, 0, 0));
    const int32_t filled = filledWidth(range.iLow, range.iHigh, position, client.width);
    // A filled part narrower than its round ends would exceed the outline.
    if (filled < client.height) graphics.setClip(outline);
    graphics.fillPath(gradient, CreateRoundedPath({0, 0, filled, client.height}, radius));
    return handled(1);
}

}  // namespace pdx
