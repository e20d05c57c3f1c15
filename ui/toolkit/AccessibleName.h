// The name of a window for screen readers. Widgets that draw themselves need it: their windows hold no text.
#pragma once

#include <windows.h>

#include <string>

#include "platform/ServiceHolder.h"

namespace pdx {

/// A receiver of accessible names.
class AccessibleNames {
  public:
    virtual ~AccessibleNames() = default;
    virtual void publish(HWND window, const std::wstring& name) = 0;
};

/// Receives the names in place of the platform's accessibility service. Null in the product; tests set it.
extern ServiceHolder<AccessibleNames> g_accessibleNames;

/// Publishes the name of a window's client area. The thread must have initialised COM; a failure is silent.
void publishAccessibleName(HWND window, const std::wstring& name);

}  // namespace pdx
