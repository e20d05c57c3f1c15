// The library's embedded resources, by type and by name or number.
#pragma once

#include "config/rules/ResourceData.h"

namespace pdx {

/// The bytes of a resource of this library, without a copy; empty if it is missing. Logs nothing. Any thread.
ResourceData loadResource(const ResourceId& resource);

}  // namespace pdx
