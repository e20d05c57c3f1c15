// What the registry holds, as JSON to compare.
#pragma once

#include <nlohmann/json.hpp>

#include "platform/Registry.h"

namespace pdx {

/// The values of a key that are texts or DWORDs, the latter as "0x00000001"; the default value's name is empty.
nlohmann::ordered_json valuesOf(const RegistryKey& key);
/// The same of the key and all keys below it, by their paths from it ("" is its own); empty without a key.
nlohmann::ordered_json treeOf(RegistryKey key);

}  // namespace pdx
