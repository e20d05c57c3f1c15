#include "ui/dialog/DialogUi.h"

#include "platform/Errors.h"
#include "platform/Log.h"
#include "ui/dialog/PagePictures.h"

namespace pdx {
namespace {

constexpr DWORD quitRepeatMs = 100;
// Half a second in all.
constexpr DWORD loopCheckMs = 10;
constexpr int loopChecks = 50;

/// Ends a menu or a drag of the window, asynchronously on the window's thread.
BOOL CALLBACK cancelMode(HWND window, LPARAM) {
    SendNotifyMessageW(window, WM_CANCELMODE, 0, 0);
    return TRUE;
}

bool runsSystemLoop(DWORD thread) {
    GUITHREADINFO state{};
    state.cbSize = sizeof state;
    return GetGUIThreadInfo(thread, &state) && (state.flags & (GUI_INMENUMODE | GUI_INMOVESIZE)) != 0;
}

}  // namespace

DialogUi::DialogUi(RunControls& controls) : run(controls) {
    if (g_pagePictures.get()) thread.prepare(prepareUiThread);
}

bool DialogUi::open() {
    if (thread.id() != 0) return true;
    if (thread.start(runThread, this))
        dialogGate.awaitReady();
    else
        PDX_LOG(logError, "BootstrapperApplication::startUiThread", "Failed to start the UI thread: %s",
                describeError(HRESULT_FROM_WIN32(GetLastError())));
    return dialogGate.window() != nullptr;
}

unsigned __stdcall DialogUi::runThread(void* argument) {
    auto& ui = *static_cast<DialogUi*>(argument);
    try {
        ui.runDialog();
    } catch (const std::exception& problem) {
        PDX_LOG(logError, "BootstrapperApplication::runUi", "The UI thread failed: %s", problem.what());
    }
    // After a failure too: the engine's thread waits for the gate.
    ui.dialogGate.setWindow(nullptr);
    ui.dialogGate.setReady(true);
    return 0;
}

void DialogUi::runDialog() { UIThreadFunc(run, dialogGate); }

void DialogUi::close() {
    if (thread.id() == 0) return;
    // Repeated until the thread has ended. A modal loop of the system inside the dialog's loop consumes the message, a
    // new one may have begun, and a post can fail.
    do {
        endSystemLoops();
        PostThreadMessageW(thread.id(), WM_QUIT, 0, 0);
    } while (!thread.endsWithin(quitRepeatMs));
    thread.join();
}

void DialogUi::hideWindow() {
    endSystemLoops();
    // Asynchronous: the dialog's thread may be busy.
    if (const HWND dialog = window()) ShowWindowAsync(dialog, SW_HIDE);
}

void DialogUi::endSystemLoops() const {
    // Id 0 would mean the windows of all threads.
    if (thread.id() != 0) EnumThreadWindows(thread.id(), cancelMode, 0);
}

void DialogUi::awaitEndOfSystemLoops() const {
    for (int check = 0; check < loopChecks && thread.id() != 0 && runsSystemLoop(thread.id()); ++check) {
        endSystemLoops();
        if (thread.endsWithin(loopCheckMs)) return;  // also the pause between two checks
    }
}

}  // namespace pdx
