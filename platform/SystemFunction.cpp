#include "platform/SystemFunction.h"

#include <string>

namespace pdx {

HMODULE systemLibrary(const wchar_t* name, LibraryLoader load) {
    HMODULE loaded = nullptr;
    if (GetModuleHandleExW(0, name, &loaded)) return loaded;
    const HMODULE library = load(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (library || GetLastError() != ERROR_INVALID_PARAMETER) return library;
    // Windows 7 without its update KB2533623 does not know the flag. With a full path this one makes it look for what
    // the library imports in the library's folder first.
    wchar_t folder[MAX_PATH];
    const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return nullptr;
    return load((std::wstring(folder) + L'\\' + name).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

}  // namespace pdx
