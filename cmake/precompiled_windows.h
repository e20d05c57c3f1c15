// What code with side effects needs besides: Windows and its graphics, in the order that those headers need.
#include "precompiled.h"

#include <windows.h>

#include <commctrl.h>
#include <objidl.h>
#include <algorithm>

// As in ui/toolkit/GdiPlus.h.
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>
