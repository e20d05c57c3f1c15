// Whether the older client of this machine goes, asks or stays.
#pragma once

#include "state/rules/OlderClientFate.h"

namespace pdx {

/// Whether an older client is installed whose fate that is (goes or asks). The registry is read only where the settings
/// leave it open.
bool isOlderClientTo(OlderClientFate fate);

}  // namespace pdx
