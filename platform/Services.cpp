#include "platform/Services.h"

#include <windows.h>

#include <algorithm>

#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Handles.h"
#include "platform/Log.h"

namespace pdx {
namespace {

using ServiceHandle = Owned<SC_HANDLE, CloseServiceHandle>;

/// The polls of a wait, in equal parts of its time-out.
constexpr int32_t polls = 10;
/// The time-out for the stop before a deletion.
constexpr uint64_t stopMilliseconds = 2000;

uint32_t pauseOf(uint64_t timeoutMilliseconds) {
    // A pause of INFINITE would never end.
    return static_cast<uint32_t>(std::min<uint64_t>(timeoutMilliseconds / polls, INFINITE - 1));
}

/// A service and the manager it was opened through.
struct Service {
    Service(const std::wstring& name, DWORD access)
        : manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS)),
          handle(manager ? OpenServiceW(manager.get(), name.c_str(), access) : nullptr),
          error(handle ? ERROR_SUCCESS : GetLastError()) {}

    [[nodiscard]] bool isUnknown() const { return error == ERROR_SERVICE_DOES_NOT_EXIST; }

    ServiceHandle manager;
    ServiceHandle handle;
    DWORD error;
};

bool isGone(const std::wstring& name) {
    constexpr DWORD noState = 0xFFFFFFFF;
    const Service service(name, SERVICE_QUERY_STATUS);
    SERVICE_STATUS status{};
    return !service.handle || !QueryServiceStatus(service.handle.get(), &status) || status.dwCurrentState == noState;
}

}  // namespace

bool stopService(const std::wstring& name, uint64_t timeoutMilliseconds) {
    PDX_LOG(logInfo, "stopService", "Stopping service '%ls'...", name);
    const Service service(name, SERVICE_STOP | SERVICE_QUERY_STATUS);
    if (!service.handle) return service.isUnknown();
    const auto begin = steadyTime();
    while (static_cast<uint64_t>((steadyTime() - begin).count()) <= timeoutMilliseconds) {
        SERVICE_STATUS status{};
        if (!QueryServiceStatus(service.handle.get(), &status)) return false;
        if (status.dwCurrentState == SERVICE_STOPPED) return true;
        if (status.dwCurrentState != SERVICE_STOP_PENDING &&
            !ControlService(service.handle.get(), SERVICE_CONTROL_STOP, &status))
            return false;
        Sleep(pauseOf(timeoutMilliseconds));
    }
    return false;
}

bool deleteService(const std::wstring& name, uint64_t timeoutMilliseconds) {
    PDX_LOG(logInfo, "deleteService", "Deleting service '%ls'...", name);
    {
        // Closed before the wait: with an open handle the service would stay listed.
        const Service service(name, DELETE);
        if (service.isUnknown()) return true;
        if (!service.handle || !stopService(name, stopMilliseconds) || !DeleteService(service.handle.get())) {
            PDX_LOG(logInfo, "deleteService", "Failed to delete service '%ls'", name);
            return false;
        }
    }
    return retryUntil([&] { return isGone(name); }, polls, pauseOf(timeoutMilliseconds));
}

}  // namespace pdx
