// The UI thread: makes, runs and deletes one dialog.
#include <windows.h>

#include "platform/ComApartment.h"
#include "platform/Errors.h"
#include "platform/Log.h"
#include "platform/Paths.h"
#include "ui/dialog/BootstrapperDialog.h"
#include "ui/dialog/DialogUi.h"
#include "ui/toolkit/Painting.h"

namespace pdx {
namespace {

void pumpMessages(HWND dialog) {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (IsDialogMessageW(dialog, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

INT_PTR CALLBACK leaveAll(HWND, UINT, WPARAM, LPARAM) { return FALSE; }

/// The size of the dialog, measured on one that is never shown. On Wine the first window of a thread takes 20 ms, and
/// the first of a template more.
Size dialogSize() {
    const HWND dialog = CreateDialogParamW(libraryModule(), MAKEINTRESOURCEW(IDD_BOOTSTRAPPER), nullptr, leaveAll, 0);
    if (!dialog) return {};
    RECT client{};
    GetClientRect(dialog, &client);
    DestroyWindow(dialog);
    return {client.right, client.bottom};
}

/// Uses each font face once: the first use in a process takes many times as long as a later one. For a face that the
/// library does not carry, as the template's, Wine then searches all installed ones.
void useFaces() {
    constexpr struct {
        const wchar_t* family;
        float size;
        int32_t style;
    } faces[] = {
        {textFace, 14, fontBold},    {textFace, 16, fontRegular}, {textFace, 20, fontBold},
        {pathFace, 14, fontRegular}, {L"", 16, fontRegular},
    };
    const Bitmap surface({1, 1});
    Graphics graphics(surface);
    ApplyQuality(graphics);
    const StringFormat format = CreateTextFormat();
    for (const auto& [family, size, style] : faces)
        graphics.measureString(L"Palisade", CreateFontByName(family, size, style).get(), {}, &format);
}

}  // namespace

void prepareUiThread() {
    startGraphics();
    LoadPrivateFonts();
    const Size size = dialogSize();
    useFaces();
    if (const auto pictures = g_pagePictures.get(); pictures && size != Size{}) pictures->setWindowSize(size);
}

void UIThreadFunc(RunControls& run, DialogGate& gate) {
    PDX_LOG(logInfo, "UIThreadFunc", "Entering UIThreadFunc");
    // For the folder chooser and the shell.
    ComApartment apartment;
    apartment.start(COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    BootstrapperDialog dialog(run, gate);
    const HWND window = dialog.Create({});
    if (window && gate.window()) {
        pumpMessages(window);
    } else if (window) {
        // Its construction failed, and no thread waits for it.
        PDX_LOG(logError, "UIThreadFunc", "The dialog is not complete");
    } else {
        PDX_LOG(logInfo, "UIThreadFunc", "CreateDialogParam failed: %s",
                describeError(HRESULT_FROM_WIN32(GetLastError())));
    }
    PDX_LOG(logInfo, "UIThreadFunc", "Exiting UIThreadFunc");
}

}  // namespace pdx
