#include "platform/Files.h"

#include <windows.h>

#include <shlwapi.h>

namespace pdx {

bool fileExists(const std::wstring& path) { return PathFileExistsW(path.c_str()); }

bool copyIfMissing(const std::wstring& source, const std::wstring& target) {
    return fileExists(target) || CopyFileW(source.c_str(), target.c_str(), TRUE);
}

bool retryUntil(const std::function<bool()>& function, int32_t tries, uint32_t delayMilliseconds) {
    for (int32_t attempt = 0; attempt < tries; ++attempt) {
        if (function()) return true;
        Sleep(delayMilliseconds);
    }
    return false;
}

}  // namespace pdx
