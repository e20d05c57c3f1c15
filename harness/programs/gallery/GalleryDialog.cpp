#include "harness/programs/gallery/GalleryDialog.h"

namespace pdx {

const Window* GalleryDialog::widget(int32_t id) const {
    const struct {
        int32_t id;
        const Window* widget;
    } rows[] = {
        {IDC_TITLE, titleLabel.get()},
        {IDC_SUBTITLE, subtitleLabel.get()},
        {IDC_BODY, bodyLabel.get()},
        {IDC_QUESTION, questionCheck.get()},
        {IDC_LOCATION_LABEL, locationLabel.get()},
        {IDC_LOCATION_VALUE, locationValue.get()},
        {IDC_CLOSE, closeButton.get()},
        {IDC_ACTION1, actionButton.get()},
        {IDC_ACTION2, actionButton2.get()},
        {IDC_ACTION3, actionButton3.get()},
        {IDC_OPTIONS, optionsLink.get()},
        {IDC_BROWSE, browseLink.get()},
        {IDC_SHORTCUT, shortcutCheck.get()},
        {IDC_PROGRESS, progressBar.get()},
    };
    for (const auto& row : rows)
        if (row.id == id) return row.widget;
    return nullptr;
}

void handlePosted(HWND dialog) {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_POSTMESSAGE | PM_QS_SENDMESSAGE)) {
        if (IsDialogMessageW(dialog, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

}  // namespace pdx
