#include "platform/SystemFunction.h"

#include <string_view>

namespace pdx {
namespace {

HMODULE loadFromSystemFolder(const wchar_t* name, LibraryLoader load) {
    const HMODULE library = load(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (library || GetLastError() != ERROR_INVALID_PARAMETER) return library;
    // Windows 7 without its update KB2533623 does not support the flag. With a full path the flag below makes it search
    // the library's folder first for the library's imports.
    wchar_t path[2 * MAX_PATH];
    const UINT length = GetSystemDirectoryW(path, MAX_PATH);
    const std::wstring_view nameText = name;
    if (length == 0 || length >= MAX_PATH || nameText.size() >= MAX_PATH) return nullptr;
    path[length] = L'\\';
    path[length + 1 + nameText.copy(path + length + 1, nameText.size())] = L'\0';
    return load(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

}  // namespace

HMODULE systemLibrary(const wchar_t* name) {
    HMODULE loaded = nullptr;
    return GetModuleHandleExW(0, name, &loaded) ? loaded : loadSystemLibrary(name, LoadLibraryExW);
}

HMODULE loadSystemLibrary(const wchar_t* name, LibraryLoader load) {
    const HMODULE library = loadFromSystemFolder(name, load);
    // On Windows 7 GDI+ is not in the system folder. The bare name means the assembly there, before any folder.
    return library || std::wstring_view(name) != L"gdiplus.dll" ? library : load(name, nullptr, 0);
}

}  // namespace pdx
