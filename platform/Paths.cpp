#include "platform/Paths.h"

#include <shlobj.h>

#include "platform/Handles.h"
#include "platform/Log.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace pdx {
namespace {

struct TaskMemoryTraits {
    using Value = wchar_t*;
    static Value invalid() noexcept { return nullptr; }
    static void close(Value value) noexcept { CoTaskMemFree(value); }
};

}  // namespace

HMODULE libraryModule() { return reinterpret_cast<HMODULE>(&__ImageBase); }

std::wstring queryProfilePath() {
    UniqueHandle<TaskMemoryTraits> path;
    if (FAILED(SHGetKnownFolderPath(FOLDERID_Profile, KF_FLAG_DONT_VERIFY, nullptr, path.put()))) return {};
    return path.get();
}

std::wstring queryUserName() {
    wchar_t name[256];
    DWORD size = 256;
    return GetUserNameW(name, &size) ? name : L"";
}

std::wstring queryShortPathName(const std::wstring& path) {
    wchar_t name[261];
    const DWORD length = GetShortPathNameW(path.c_str(), name, 261);
    return length > 0 && length < 261 ? std::wstring(name, length) : std::wstring();
}

void logProfilePathMissing() {
    PDX_LOG(logInfo, "getProfilePath", "There was a problem getting the current user's profile path");
}
void logUserNameMissing() { PDX_LOG(logInfo, "getUserName", "Unable to retrieve username!"); }
void logShortPathNameMissing(const std::wstring& path) {
    PDX_LOG(logInfo, "getShortPathName", "Failed to get short path name for %ls", path);
}

std::wstring getProfilePath() {
    std::wstring path = queryProfilePath();
    if (path.empty()) logProfilePathMissing();
    return path;
}

std::wstring getUserName() {
    std::wstring name = queryUserName();
    if (name.empty()) logUserNameMissing();
    return name;
}

std::wstring getShortPathName(const std::wstring& path) {
    std::wstring shortPath = queryShortPathName(path);
    if (shortPath.empty()) logShortPathNameMissing(path);
    return shortPath;
}

}  // namespace pdx
