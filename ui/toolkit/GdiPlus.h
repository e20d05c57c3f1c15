// GDI+ of the platform by its flat functions, and the base of the objects that own a part of it.
#pragma once

#include <windows.h>

#include <objidl.h>
#include <algorithm>

// The platform's header takes these two from wherever it finds them, and NOMINMAX took away the macros.
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

#include "platform/Handles.h"

namespace pdx {

/// Starts GDI+ for this process; called for each application object, does it once. Any thread. There is no
/// counterpart: what is drawn with may be used up to the last moment of the process, and the platform's own module is
/// held for as long. Returns false when GDI+ cannot be started; drawing then does nothing.
bool startGraphics();

template <typename Native, auto Delete>
struct GdiPlusTraits {
    using Value = Native*;
    static Value invalid() noexcept { return nullptr; }
    static void close(Value value) noexcept { Delete(value); }
};

/// Owns a GDI+ object. A failure is kept and does not stop the painting: operations on an object that could not be
/// made fail in their turn and draw nothing.
template <typename Native, auto Delete>
class GdiPlusObject {
  public:
    /// The object for the flat functions, null when it could not be made.
    [[nodiscard]] Native* native() const noexcept { return object.get(); }
    /// The first failure of this object's operations.
    [[nodiscard]] Gdiplus::Status lastStatus() const noexcept { return status; }

  protected:
    GdiPlusObject() noexcept = default;
    explicit GdiPlusObject(Native* owned) noexcept : object(owned) {}
    Native** put() noexcept { return object.put(); }
    Gdiplus::Status collect(Gdiplus::Status result) const noexcept {
        if (status == Gdiplus::Ok) status = result;
        return result;
    }

  private:
    UniqueHandle<GdiPlusTraits<Native, Delete>> object;
    mutable Gdiplus::Status status = Gdiplus::Ok;
};

/// The native object of a wrapper that may be absent.
template <typename Object>
auto nativeOf(const Object* object) noexcept {
    return object ? object->native() : nullptr;
}

}  // namespace pdx
