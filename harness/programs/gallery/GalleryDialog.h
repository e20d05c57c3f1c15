// The installer's dialog, with access to its widgets.
#pragma once

#include <windows.h>

#include <cstdint>

#include "ui/dialog/BootstrapperDialog.h"

namespace pdx {

class GalleryDialog : public BootstrapperDialog {
  public:
    using BootstrapperDialog::BootstrapperDialog;

    /// The kind of the page that shows.
    [[nodiscard]] int32_t pageKind() const { return topPage().kind; }
    /// The object of a control; null for the picture, which has none.
    [[nodiscard]] const Window* widget(int32_t id) const;
};

/// Handles what has been posted to this thread, and leaves timers alone.
void handlePosted(HWND dialog);

}  // namespace pdx
