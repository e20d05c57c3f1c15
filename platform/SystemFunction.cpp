#include "platform/SystemFunction.h"

#include <string>

namespace pdx {
namespace {

HMODULE loadFromSystemFolder(const wchar_t* name, LibraryLoader load) {
    const HMODULE library = load(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (library || GetLastError() != ERROR_INVALID_PARAMETER) return library;
    // Windows 7 without its update KB2533623 does not know the flag. With a full path this one makes it look for what
    // the library imports in the library's folder first.
    wchar_t folder[MAX_PATH];
    const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return nullptr;
    return load((std::wstring(folder) + L'\\' + name).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

}  // namespace

HMODULE systemLibrary(const wchar_t* name) {
    HMODULE loaded = nullptr;
    return GetModuleHandleExW(0, name, &loaded) ? loaded : loadSystemLibrary(name, LoadLibraryExW);
}

HMODULE loadSystemLibrary(const wchar_t* name, LibraryLoader load) {
    const HMODULE library = loadFromSystemFolder(name, load);
    // Windows 7 has GDI+ in no system folder. It leads the bare name to the assembly before it searches any folder.
    return library || std::wstring_view(name) != L"gdiplus.dll" ? library : load(name, nullptr, 0);
}

}  // namespace pdx
