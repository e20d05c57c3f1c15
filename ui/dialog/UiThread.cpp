// The UI thread: one dialog from its making to its end.
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

/// The size that the dialog will have, from one that never shows. The first window of a thread costs Wine 20 ms, the
/// first of a template some more.
Size dialogSize() {
    const HWND dialog = CreateDialogParamW(libraryModule(), MAKEINTRESOURCEW(IDD_BOOTSTRAPPER), nullptr, leaveAll, 0);
    if (!dialog) return {};
    RECT client{};
    GetClientRect(dialog, &client);
    DestroyWindow(dialog);
    return {client.right, client.bottom};
}

/// The first use of a face in a process takes many times as long as a later one, and the first of a face that is not
/// carried, as the template's is not, makes Wine look through all that are installed.
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
        // It broke off while it was made, and nobody waits for it.
        PDX_LOG(logError, "UIThreadFunc", "The dialog is not complete");
    } else {
        PDX_LOG(logInfo, "UIThreadFunc", "CreateDialogParam failed: %s",
                describeError(HRESULT_FROM_WIN32(GetLastError())));
    }
    PDX_LOG(logInfo, "UIThreadFunc", "Exiting UIThreadFunc");
}

}  // namespace pdx
