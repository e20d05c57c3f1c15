// Files: whether they are there, and trying again.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace pdx {

/// Whether a file or folder is there.
bool fileExists(const std::wstring& path);
/// True if the target is there already or could be copied; an existing target is never written over.
bool copyIfMissing(const std::wstring& source, const std::wstring& target);

/// Calls the function until it returns true, `tries` times at most, and sleeps the delay after each false result.
/// Returns whether it did; no tries gives false.
bool retryUntil(const std::function<bool()>& function, int32_t tries, uint32_t delayMilliseconds);

}  // namespace pdx
