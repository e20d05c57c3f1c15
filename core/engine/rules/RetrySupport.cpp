#include "core/engine/rules/RetrySupport.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/rules/ProgramErrors.h"

namespace pdx {
namespace {

/// Failures of caching that are final.
constexpr int32_t finalCacheFailures[] = {
    hresultFromWin32(userExitCode),
    static_cast<int32_t>(0x80200010u),  // the transfer service's own retries are used up
    hresultFromWin32(2),                // the file is not there
    hresultFromWin32(12007),            // the host name is unknown
};

/// Temporary failures of executing: the Windows Installer service is unavailable or busy.
constexpr int32_t passingExecuteFailures[] = {hresultFromWin32(1601), hresultFromWin32(1618)};

/// Windows Installer errors that make a generic failure temporary: files and keys in use, sources not reached.
constexpr uint32_t passingInstallerErrors[] = {1303, 1304, 1306, 1307, 1309, 1310, 1311, 1312, 1316, 1317,
                                               1321, 1335, 1402, 1406, 1606, 1706, 1719, 1723, 1923, 1931};

template <typename Range, typename Value>
bool contains(const Range& range, Value value) {
    return std::find(std::begin(range), std::end(range), value) != std::end(range);
}

}  // namespace

bool isRetriable(RetryKind kind, int32_t hr, uint32_t lastError) {
    if (kind == RetryKind::cache) return !contains(finalCacheFailures, hr);
    return contains(passingExecuteFailures, hr) ||
           (hr == hresultFromWin32(genericFailureCode) && contains(passingInstallerErrors, lastError));
}

RetrySupport::RetrySupport(uint32_t maximumRetries, uint32_t delayMilliseconds, Sleep sleepFunction)
    : maximum(maximumRetries), delay(delayMilliseconds), sleep(std::move(sleepFunction)) {}

void RetrySupport::start(RetryKind kind, std::wstring_view package, std::wstring_view payload) {
    Entry& entry = entryOf(kind);
    if (package.empty()) {
        entry = {};
    } else if (entry.package == package && entry.payload == payload) {
        ++entry.count;
        sleep(delay);
    } else {
        entry = {std::wstring(package), std::wstring(payload), 0, 0};
    }
    entry.lastError = 0;
}

void RetrySupport::errorOccurred(std::wstring_view package, uint32_t code) {
    if (package.empty()) return;
    for (Entry& entry : entries)
        if (entry.package == package) entry.lastError = code;
}

int32_t RetrySupport::end(RetryKind kind, std::wstring_view package, std::wstring_view payload, int32_t hr) {
    Entry& entry = entryOf(kind);
    if (package.empty()) {
        entry = {};
        return resultNone;
    }
    const bool again = hr < 0 && entry.count < maximum && entry.package == package && entry.payload == payload &&
                       isRetriable(kind, hr, entry.lastError);
    return again ? resultRetry : resultNone;
}

}  // namespace pdx
