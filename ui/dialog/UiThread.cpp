// The UI thread: one dialog from its making to its end.
#include <windows.h>

#include "platform/ComApartment.h"
#include "platform/Errors.h"
#include "platform/Log.h"
#include "ui/dialog/BootstrapperDialog.h"

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

}  // namespace

void UIThreadFunc(BootstrapperApplication& application) {
    PDX_LOG(logInfo, "UIThreadFunc", "Entering UIThreadFunc");
    // For the folder chooser and the shell.
    ComApartment apartment;
    apartment.start(COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    BootstrapperDialog dialog(application);
    const HWND window = dialog.Create({});
    if (window && application.dialogWindow()) {
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
