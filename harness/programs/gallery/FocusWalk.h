// The keyboard's way through a page.
#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>

#include "harness/programs/gallery/GalleryDialog.h"
#include "harness/programs/Snapshot.h"

namespace pdx {

/// Called at each control that has got the focus by Tab, with the control's picture then.
using FocusVisitor = std::function<void(int32_t control, const Snapshot& picture)>;

/// Presses Tab until the focus is where it was first, then Shift+Tab as often. Gives "forward" and "backward", the
/// controls' identifiers in the order in which they had the focus, each list beginning and ending with the same one,
/// and "changed": by control, how many of its pixels differ with the focus. A check box, which looks the same with the
/// focus while it is checked, is unchecked for that by the space bar and checked again;
/// "toggled" lists those. The keys go through the system's input queue to the foreground window. Throws
/// std::runtime_error when a key does not arrive.
nlohmann::json walkFocus(const GalleryDialog& dialog, const FocusVisitor& visitor);

}  // namespace pdx
