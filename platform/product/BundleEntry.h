// The running bundle's entry among the installed programs.
#pragma once

#include <string>

#include "platform/Registry.h"

namespace pdx {

/// The entry, to be written (32-bit view, where the engine registers a bundle). No key, which fails every call without
/// a log line, for a provider key that names no single entry; also without the entry, which openSubKey logs.
RegistryKey openBundleEntry(const std::wstring& providerKey);

}  // namespace pdx
