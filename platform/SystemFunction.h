// System functions that not every version of Windows has.
#pragma once

#include <windows.h>

namespace pdx {

/// The function of that name; null if the library lacks it or is null itself.
template <typename Function>
Function lookUp(HMODULE library, const char* name) {
    return library ? reinterpret_cast<Function>(GetProcAddress(library, name)) : nullptr;
}

/// The same for a library that every process has loaded, such as kernel32.dll.
template <typename Function>
Function systemFunction(const wchar_t* library, const char* name) {
    return lookUp<Function>(GetModuleHandleW(library), name);
}

/// The loader of libraries, or a test's.
using LibraryLoader = decltype(&LoadLibraryExW);

/// A library of the system folder, loaded if necessary and never freed; null if there is none of that name. A module of
/// that name which is loaded already is returned from any folder: its code has run in this process. Otherwise only the
/// system folder is searched, except for GDI+, which is in a side-by-side assembly on Windows 7. The library's imports
/// are searched there too, except on Windows 7 without KB2533623, which continues with other folders for a missing
/// import.
HMODULE systemLibrary(const wchar_t* name);
/// The same, but ignores modules that are loaded already.
HMODULE loadSystemLibrary(const wchar_t* name, LibraryLoader load);

}  // namespace pdx
