#include "ui/dialog/BootstrapperDialog.h"

#include <utility>

namespace pdx {

BootstrapperDialog::BootstrapperDialog(RunControls& controls, DialogGate& dialogGate)
    : run(controls), gate(dialogGate) {}

BootstrapperDialog::~BootstrapperDialog() {
    gate.setWindow(nullptr);
    gate.setReady(true);
    const HWND window = std::exchange(hwnd, nullptr);
    if (!IsWindow(window)) return;
    SetWindowLongPtrW(window, DWLP_USER, 0);
    DestroyWindow(window);
}

MessageResult BootstrapperDialog::OnInitDialog() {
    LoadPrivateFonts();
    SetWindowTextW(hwnd, Translate(L"INSTALLER_WINDOW_TITLE").c_str());
    const bool shown = run.display() != BOOTSTRAPPER_DISPLAY_NONE;
    if (shown) pagePictures();
    createControls();
    locationValue->SetText(run.installFolder());
    if (shown) Show(SW_SHOW);
    gate.setWindow(hwnd);
    gate.setReady(true);
    return handled(FALSE);
}

MessageResult BootstrapperDialog::OnQueryEndSession() {
    run.noteLogout();
    return unhandled();
}

MessageResult BootstrapperDialog::OnDestroy() {
    // Kept in case the window is destroyed before the user answers.
    if (questionCheck) questionChecked = questionCheck->IsChecked();
    PostQuitMessage(0);
    // The exit code of a closed window. A later request replaces it until the engine's loop ends.
    run.quit(0);
    return handled();
}

}  // namespace pdx
