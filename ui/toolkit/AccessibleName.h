// The name under which a screen reader finds a window. Custom-drawn widgets depend on it: their windows hold no text
// that it could read.
#pragma once

#include <windows.h>

#include <string>

#include "platform/ProcessSlot.h"

namespace pdx {

/// Where accessible names go.
class AccessibleNames {
  public:
    virtual ~AccessibleNames() = default;
    virtual void publish(HWND window, const std::wstring& name) = 0;
};

/// What takes the names in place of the platform's accessibility service, for those who have to see what was
/// published; null in the product.
extern ProcessSlot<AccessibleNames> g_accessibleNames;

/// Publishes the name of a window's client area. The thread must have initialised COM; a failure is silent.
void publishAccessibleName(HWND window, const std::wstring& name);

}  // namespace pdx
