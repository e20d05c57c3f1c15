// Unique identifiers.
#pragma once

#include <string>

namespace pdx {

/// A new identifier in lower case, as "0f8fad5b-d9cb-469f-a165-70867728950e".
std::string newUuidString();

}  // namespace pdx
