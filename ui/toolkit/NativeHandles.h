// Owning wrappers of native drawing objects.
#pragma once

#include <windows.h>

#include "platform/Handles.h"

namespace pdx {

using NativeFont = Owned<HFONT, DeleteObject>;
using NativeBitmap = Owned<HBITMAP, DeleteObject>;
/// A device context in memory, which does not show.
using MemoryContext = Owned<HDC, DeleteDC>;

/// Selects an object into a context; the destructor selects the earlier one again.
class SelectedObject {
  public:
    SelectedObject(const MemoryContext& owner, HGDIOBJ object)
        : context(owner.get()), before(SelectObject(context, object)) {}
    ~SelectedObject() { SelectObject(context, before); }
    SelectedObject(const SelectedObject&) = delete;
    SelectedObject& operator=(const SelectedObject&) = delete;

  private:
    HDC context;
    HGDIOBJ before;
};

}  // namespace pdx
