#include "platform/Paths.h"

#include <shlobj.h>

#include "platform/ComPtr.h"
#include "platform/Log.h"
#include "platform/PathFunctions.h"
#include "platform/rules/Numbers.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace pdx {
namespace {

/// The file of a module; null means the program.
std::wstring moduleFile(HMODULE module) {
    wchar_t path[pathCapacity + 1];
    const DWORD length = GetModuleFileNameW(module, path, ARRAYSIZE(path));
    // A path that is too long is cut and fills the buffer.
    return length < ARRAYSIZE(path) ? std::wstring(path, length) : std::wstring();
}

}  // namespace

HMODULE libraryModule() { return reinterpret_cast<HMODULE>(&__ImageBase); }

std::wstring getTempPath() {
    wchar_t path[pathCapacity - 1];
    const DWORD length = GetTempPathW(ARRAYSIZE(path), path);
    if (length == 0 || length >= ARRAYSIZE(path)) {
        PDX_LOG(logInfo, "GetTempPathW", "Failed to retrieve temp path");
        return {};
    }
    return addBackslash({path, length});
}

std::wstring getModuleFilePath(const std::wstring& name) {
    return appendPath(removeFileSpec(moduleFile(libraryModule())), name);
}

std::wstring getProcessFilePath() { return moduleFile(nullptr); }

std::wstring getProcessFileName() {
    const std::wstring path = getProcessFilePath();
    return path.substr(path.find_last_of(L'\\') + 1);
}

std::wstring getKnownFolderPath(REFKNOWNFOLDERID id) {
    TaskText path;
    if (FAILED(SHGetKnownFolderPath(id, KF_FLAG_DONT_VERIFY, nullptr, path.put()))) return {};
    return path.get();
}

std::wstring getEnvironmentText(const std::wstring& name) {
    wchar_t text[pathCapacity + 1];
    const DWORD length = GetEnvironmentVariableW(name.c_str(), text, ARRAYSIZE(text));
    return length < ARRAYSIZE(text) ? std::wstring(text, length) : std::wstring();
}

std::wstring getProfilePath() { return getKnownFolderPath(FOLDERID_Profile); }

std::wstring getUserName() {
    wchar_t name[256];
    DWORD size = ARRAYSIZE(name);
    return GetUserNameW(name, &size) ? name : L"";
}

std::wstring getShortPathName(const std::wstring& path) {
    wchar_t name[261];
    const DWORD length = GetShortPathNameW(path.c_str(), name, ARRAYSIZE(name));
    return length > 0 && length < ARRAYSIZE(name) ? std::wstring(name, length) : std::wstring();
}

}  // namespace pdx
