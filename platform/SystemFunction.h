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

/// The loader of libraries, or a test's.
using LibraryLoader = decltype(&LoadLibraryExW);

/// A library of the system's own folder, loaded if it is not loaded yet, and never freed; null if there is none of that
/// name. A module of that name which the process has already is returned wherever it lies: its code has run here by
/// then. Otherwise the library is looked for in the system folder alone, but for GDI+, which Windows 7 keeps in a
/// side-by-side assembly. What it imports is looked for there too, except by a system that does not know the flag for
/// it (Windows 7 without KB2533623): one that lacks an import there goes on to the other folders of its search.
HMODULE systemLibrary(const wchar_t* name);
/// The same without a look at what the process has already.
HMODULE loadSystemLibrary(const wchar_t* name, LibraryLoader load);

}  // namespace pdx
