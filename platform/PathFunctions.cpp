#include "platform/PathFunctions.h"

#include <shlwapi.h>

#include "platform/SystemFunction.h"

namespace pdx {
namespace {

HRESULT WINAPI appendShort(wchar_t* path, size_t size, const wchar_t* more) {
    // PathAppendW has no size parameter and writes up to MAX_PATH characters.
    wchar_t joined[MAX_PATH];
    if (wcslen(path) + 1 + wcslen(more) >= MAX_PATH) return E_OUTOFMEMORY;
    wcscpy(joined, path);
    if (!PathAppendW(joined, more) || wcslen(joined) >= size) return E_OUTOFMEMORY;
    wcscpy(path, joined);
    return S_OK;
}

HRESULT WINAPI removeFileSpecShort(wchar_t* path, size_t) { return PathRemoveFileSpecW(path) ? S_OK : S_FALSE; }

HRESULT WINAPI addBackslashByHand(wchar_t* path, size_t size) {
    const size_t length = wcslen(path);
    if (length == 0 || path[length - 1] == L'\\') return S_FALSE;
    if (length + 2 > size) return HRESULT_FROM_WIN32(ERROR_INSUFFICIENT_BUFFER);
    path[length] = L'\\';
    path[length + 1] = L'\0';
    return S_OK;
}

/// A buffer with the path and that many more characters.
std::wstring withCapacity(std::wstring_view path, size_t more) {
    std::wstring buffer(path);
    buffer.resize(path.size() + more + 2);
    return buffer;
}

std::wstring cutAtEnd(std::wstring buffer) {
    buffer.resize(wcslen(buffer.c_str()));
    return buffer;
}

}  // namespace

PathFunctions bindPathFunctions(HMODULE library) {
    PathFunctions functions{
        lookUp<decltype(PathFunctions::append)>(library, "PathCchAppend"),
        lookUp<decltype(PathFunctions::removeFileSpec)>(library, "PathCchRemoveFileSpec"),
        lookUp<decltype(PathFunctions::addBackslash)>(library, "PathCchAddBackslash"),
    };
    if (!functions.append) functions.append = appendShort;
    if (!functions.removeFileSpec) functions.removeFileSpec = removeFileSpecShort;
    if (!functions.addBackslash) functions.addBackslash = addBackslashByHand;
    return functions;
}

const PathFunctions& pathFunctions() {
    static const PathFunctions functions = bindPathFunctions(systemLibrary(L"api-ms-win-core-path-l1-1-0.dll"));
    return functions;
}

std::wstring appendPath(std::wstring_view path, const std::wstring& more) {
    std::wstring buffer = withCapacity(path, more.size());
    return SUCCEEDED(pathFunctions().append(buffer.data(), buffer.size(), more.c_str())) ? cutAtEnd(buffer)
                                                                                         : std::wstring();
}

std::wstring removeFileSpec(std::wstring_view path) {
    std::wstring buffer = withCapacity(path, 0);
    return SUCCEEDED(pathFunctions().removeFileSpec(buffer.data(), buffer.size())) ? cutAtEnd(buffer) : std::wstring();
}

std::wstring addBackslash(std::wstring_view path) {
    if (path.empty()) return {};
    std::wstring buffer = withCapacity(path, 0);
    pathFunctions().addBackslash(buffer.data(), buffer.size());
    return cutAtEnd(buffer);
}

void restrictDllSearch() {
    using SetDirectories = BOOL(WINAPI*)(DWORD);
    if (const auto set = systemFunction<SetDirectories>(L"kernel32.dll", "SetDefaultDllDirectories"))
        set(LOAD_LIBRARY_SEARCH_SYSTEM32);
}

}  // namespace pdx
