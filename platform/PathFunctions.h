// Path functions that Windows 7 lacks: looked up when first used, with a replacement for each.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace pdx {

/// PathCchAppend, PathCchRemoveFileSpec and PathCchAddBackslash, or their replacements. Sizes are in characters with
/// the end mark. A system without them joins paths of 260 characters at most and answers E_OUTOFMEMORY above.
struct PathFunctions {
    HRESULT(WINAPI* append)(wchar_t* path, size_t size, const wchar_t* more);
    HRESULT(WINAPI* removeFileSpec)(wchar_t* path, size_t size);
    HRESULT(WINAPI* addBackslash)(wchar_t* path, size_t size);
};

/// The functions of the given library; the replacement of each that it lacks, of all without a library.
PathFunctions bindPathFunctions(HMODULE library);
/// The functions of this system, looked up once a process.
const PathFunctions& pathFunctions();

/// The two joined with one separator; a second path that is a full one replaces the first. Empty if the result would be
/// longer than the system's 259 characters.
std::wstring appendPath(std::wstring_view path, const std::wstring& more);
/// The path without its last component and the separator before it ("C:\a\b" becomes "C:\a"); a root stays.
std::wstring removeFileSpec(std::wstring_view path);
/// The path with one separator at its end; the empty path stays empty.
std::wstring addBackslash(std::wstring_view path);

/// Lets this process load libraries from the system folder alone, where the system knows how to; otherwise does
/// nothing.
void restrictDllSearch();

}  // namespace pdx
