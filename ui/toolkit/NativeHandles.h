// Owning wrappers of native drawing objects.
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
/// A device context in memory, which does not show.
using MemoryContext = UniqueHandle<MemoryContextTraits>;

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
