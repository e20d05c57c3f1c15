// Windows services: stopping and deleting one by its name.
#pragma once

#include <cstdint>
#include <string>

namespace pdx {

/// Stops a service and waits until it has stopped, at most for the time-out, a tenth of which is the poll interval.
/// True if it has stopped or does not exist; false at once if it refuses. Logs "Stopping service '%ls'..." at INFO.
bool stopService(const std::wstring& name, uint64_t timeoutMilliseconds);

/// Stops a service within 2000 milliseconds, deletes it, and polls ten times in the time-out until it is no longer
/// listed. Other programs with a handle to the service can delay that. True if it can no longer be opened afterwards.
/// Logs "Deleting service '%ls'..." and, if it could not be stopped or deleted, "Failed to delete service '%ls'" at
/// INFO.
bool deleteService(const std::wstring& name, uint64_t timeoutMilliseconds);

}  // namespace pdx
