// The platform's GDI+ through its flat functions, and the base class of the objects that own a part of it.
#pragma once

#include <windows.h>

#include <objidl.h>
#include <algorithm>

// gdiplus.h uses min and max unqualified, and NOMINMAX removes the macros.
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

#include "platform/Handles.h"

namespace pdx {

/// Starts GDI+ once for the process; any thread may call it. GDI+ is never shut down, because its objects may be used
/// until the process ends. Returns false and logs when GDI+ cannot be started; drawing then does nothing.
bool startGraphics();

/// Owns a GDI+ object. A failure is kept and does not stop the painting: operations on an object that could not be
/// made fail too, and draw nothing.
template <typename Native, auto deleteNative>
class GdiPlusObject {
  public:
    /// The object for the flat functions; null when it could not be made.
    [[nodiscard]] Native* native() const noexcept { return object.get(); }
    /// The first failure of this object's operations.
    [[nodiscard]] Gdiplus::Status lastStatus() const noexcept { return status; }
    /// Calls a flat function with this object and the arguments; returns its status and keeps a failure.
    template <typename Function, typename... Arguments>
    Gdiplus::Status call(Function function, Arguments... arguments) const noexcept {
        return collect(function(native(), arguments...));
    }

  protected:
    GdiPlusObject() noexcept = default;
    Native** put() noexcept { return object.put(); }
    /// Owns the object that a flat function makes, of a type that GDI+ derives from Native.
    template <typename Derived, typename Function, typename... Arguments>
    void make(Function function, Arguments... arguments) noexcept {
        Derived* made = nullptr;
        collect(function(arguments..., &made));
        *put() = made;
    }
    Gdiplus::Status collect(Gdiplus::Status result) const noexcept {
        if (status == Gdiplus::Ok) status = result;
        return result;
    }

  private:
    Owned<Native*, deleteNative> object;
    mutable Gdiplus::Status status = Gdiplus::Ok;
};

/// The native object of a wrapper; null for a null wrapper.
template <typename Object>
auto nativeOf(const Object* object) noexcept {
    return object ? object->native() : nullptr;
}

}  // namespace pdx
