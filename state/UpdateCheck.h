// Asks the update service which installer this machine should run. The service rolls a version out to a share of the
// machines at a time, so each machine asks as one of 100 buckets.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "state/rules/UpdateRules.h"

struct _IP_ADAPTER_INFO;

namespace pdx {

/// The system's list of adapters, in a buffer of that size, which is in and out; its error.
using AdapterQuery = unsigned long (*)(_IP_ADAPTER_INFO* list, unsigned long* size);
unsigned long askAdapters(_IP_ADAPTER_INFO* list, unsigned long* size);

/// The hardware address of the first network adapter as "00-11-22-33-44-55"; empty if there is none. Empty too if the
/// machine has more adapters than the system's list of 5184 bytes holds.
std::string getLocalMacAddress(AdapterQuery ask = askAdapters);

/// This machine's bucket, from 1 to 100; a machine without an adapter has 62. Logs "Using bucket value: %u".
uint32_t GetUpdateBucket(AdapterQuery ask = askAdapters);

/// The address of the newer installer that the configured service names for this machine, if any. Every failure means
/// no update.
std::optional<std::wstring> findNewerInstaller(const std::string& currentVersion);

}  // namespace pdx
