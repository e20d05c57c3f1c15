// Functions of the system that not every version of it has.
#pragma once

#include <windows.h>

namespace pdx {

/// The function of that name; null if the library lacks it or is null itself.
template <typename Function>
Function lookUp(HMODULE library, const char* name) {
    return library ? reinterpret_cast<Function>(GetProcAddress(library, name)) : nullptr;
}

/// The same of a library that every process has loaded, such as kernel32.dll.
template <typename Function>
Function systemFunction(const wchar_t* library, const char* name) {
    return lookUp<Function>(GetModuleHandleW(library), name);
}

/// A library of the system's own folder, loaded where it is not there yet, and never let go; null if there is none of
/// that name.
inline HMODULE systemLibrary(const wchar_t* name) {
    if (const HMODULE loaded = GetModuleHandleW(name)) return loaded;
    return LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
}

}  // namespace pdx
