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

/// A library of the system's own folder, loaded where it is not there yet, and never let go; null if there is none of
/// that name. Neither it nor what it imports is looked for in another folder. A module of that name which the process
/// has already is taken wherever it lies: its code has run here by then.
HMODULE systemLibrary(const wchar_t* name, LibraryLoader load = LoadLibraryExW);

}  // namespace pdx
