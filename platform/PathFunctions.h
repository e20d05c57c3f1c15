// Path functions that Windows 7 lacks: looked up at the first use, with a replacement for each.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace pdx {

/// PathCchAppend, PathCchRemoveFileSpec and PathCchAddBackslash, or their replacements. Sizes are in characters with
/// the end mark. The replacements join up to 259 characters without it and return E_OUTOFMEMORY above that.
struct PathFunctions {
    HRESULT(WINAPI* append)(wchar_t* path, size_t size, const wchar_t* more);
    HRESULT(WINAPI* removeFileSpec)(wchar_t* path, size_t size);
    HRESULT(WINAPI* addBackslash)(wchar_t* path, size_t size);
};

/// The functions of a library, with a replacement for each that it lacks; the replacements without a library.
PathFunctions bindPathFunctions(HMODULE library);
/// The functions of this system, looked up once a process.
const PathFunctions& pathFunctions();

/// Joins two paths with one separator; a full second path replaces the first. Empty if the result would be longer than
/// 259 characters, the system's limit without the end mark.
std::wstring appendPath(std::wstring_view path, const std::wstring& more);
/// The path without its last component and the separator before it ("C:\a\b" becomes "C:\a"); a root stays.
std::wstring removeFileSpec(std::wstring_view path);
/// The path with one separator at its end; the empty path stays empty.
std::wstring addBackslash(std::wstring_view path);

/// Restricts the process's library search to the system folder; does nothing on a system without that function.
void restrictDllSearch();

}  // namespace pdx
