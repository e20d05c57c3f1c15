// What the library carries within itself, by type and by name or number.
#pragma once

#include "config/rules/ResourceData.h"

namespace pdx {

/// The bytes of a resource of this library, without a copy; empty, and nothing logged, when there is none. Any thread.
ResourceData loadResource(const ResourceId& resource);

}  // namespace pdx
