// The running bundle's entry among the installed programs.
#pragma once

#include <string>

#include "platform/Registry.h"

namespace pdx {

/// Opens the entry for writing (32-bit view, where the engine registers a bundle). Returns no key for a provider key
/// that names no single entry, and for a missing entry, which openSubKey logs.
RegistryKey openBundleEntry(const std::wstring& providerKey);

}  // namespace pdx
