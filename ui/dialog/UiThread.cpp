// The UI thread: one dialog from its making to its end.
#include <windows.h>

#include <objbase.h>

#include "platform/Errors.h"
#include "platform/Log.h"
#include "ui/dialog/BootstrapperDialog.h"

namespace pdx {
namespace {

/// The thread's single-threaded apartment, which the folder chooser and the shell need.
class Apartment {
  public:
    Apartment() : result(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
    ~Apartment() {
        if (SUCCEEDED(result)) CoUninitialize();
    }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;

  private:
    HRESULT result;
};

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
    const Apartment apartment;
    BootstrapperDialog dialog(application);
    if (const HWND window = dialog.Create({})) {
        pumpMessages(window);
    } else {
        PDX_LOG(logInfo, "UIThreadFunc", "CreateDialogParam failed: %s",
                describeError(HRESULT_FROM_WIN32(GetLastError())));
    }
    PDX_LOG(logInfo, "UIThreadFunc", "Exiting UIThreadFunc");
}

}  // namespace pdx
