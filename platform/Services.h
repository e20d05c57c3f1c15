// Windows services: stopping and deleting one by its name.
#pragma once

#include <cstdint>
#include <string>

namespace pdx {

/// Stops a service and waits until it is stopped, for at most the time-out; polls every tenth part of it. True if it is
/// stopped or does not exist; false at once if it refuses. Logs "Stopping service '%ls'..." at INFO.
bool stopService(const std::wstring& name, uint64_t timeoutMilliseconds);

/// Stops a service within 2000 milliseconds, deletes it, and polls ten times in the time-out until it is gone. A
/// service stays listed while anyone holds it open. True if it is gone or never existed. Logs "Deleting service
/// '%ls'..." and, where it could not be stopped or deleted, "Failed to delete service '%ls'" at INFO.
bool deleteService(const std::wstring& name, uint64_t timeoutMilliseconds);

}  // namespace pdx
