// The tour through all pages of the dialog, in one process and without an installation.
#pragma once

#include <functional>
#include <string>

#include "harness/programs/gallery/GalleryDialog.h"

namespace pdx {

/// Called while a page shows, on the dialog's thread; for a prompt inside the prompt's own loop.
using PageVisitor = std::function<void(GalleryDialog& dialog, const std::string& page)>;

/// Shows every kind of page and every prompt in one language, by the messages and the clicks that lead there in a real
/// run. The machine must have an older client in C:\Bastion and a drive D: with too little space. Throws
/// std::runtime_error when a page does not show, and what the visitor throws.
void visitPages(const std::wstring& language, const PageVisitor& visitor);

}  // namespace pdx
