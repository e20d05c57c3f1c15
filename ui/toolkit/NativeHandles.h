// Owning wrappers of the native drawing objects.
#pragma once

#include <windows.h>

#include "platform/Handles.h"

namespace pdx {

template <typename Native>
struct DrawingObjectTraits {
    using Value = Native;
    static Value invalid() noexcept { return nullptr; }
    static void close(Value value) noexcept { DeleteObject(value); }
};
using NativeFont = UniqueHandle<DrawingObjectTraits<HFONT>>;
using NativeBitmap = UniqueHandle<DrawingObjectTraits<HBITMAP>>;

struct MemoryContextTraits {
    using Value = HDC;
    static Value invalid() noexcept { return nullptr; }
    static void close(Value value) noexcept { DeleteDC(value); }
};
/// A device context that shows nowhere.
using MemoryContext = UniqueHandle<MemoryContextTraits>;

/// An object in use by a context, which gets its earlier one back at the end.
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
