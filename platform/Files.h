// Whether files exist, copying, and retries.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace pdx {

/// Whether a file or folder exists.
bool fileExists(const std::wstring& path);
/// True if the target exists or the copy succeeded; never overwrites a target.
bool copyIfMissing(const std::wstring& source, const std::wstring& target);

/// Calls the function until it returns true, `tries` times at most, and sleeps the delay after each false result.
/// Returns whether it returned true.
bool retryUntil(const std::function<bool()>& function, int32_t tries, uint32_t delayMilliseconds);

}  // namespace pdx
