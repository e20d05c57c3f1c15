// Asks the update service which installer this machine should run. The service releases a version to some of the
// machines at a time, so each machine belongs to one of 100 buckets.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

struct _IP_ADAPTER_INFO;

namespace pdx {

/// Fills the list of network adapters; size is in and out, in bytes. Returns the system's error.
using AdapterQuery = unsigned long (*)(_IP_ADAPTER_INFO* list, unsigned long* size);
unsigned long askAdapters(_IP_ADAPTER_INFO* list, unsigned long* size);

/// The hardware address of the first network adapter as "00-11-22-33-44-55"; empty if there is none. Empty too if the
/// machine has more adapters than the system's list of 5184 bytes holds.
std::string getLocalMacAddress(AdapterQuery ask = askAdapters);

/// This machine's bucket, from 1 to 100; 62 without a network adapter. Logs "Using bucket value: %u".
uint32_t GetUpdateBucket(AdapterQuery ask = askAdapters);

/// The address of the newer installer that the configured service names for this machine. Nothing if the version that
/// it names is not newer, and on any failure.
std::optional<std::wstring> findNewerInstaller(const std::string& currentVersion);

}  // namespace pdx
