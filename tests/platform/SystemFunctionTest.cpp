#include "platform/SystemFunction.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace pdx {
namespace {

DWORD refusal = 0;
std::vector<std::wstring> taken;

/// A system that refuses to look in its own folder alone.
HMODULE WINAPI loadWithoutFlag(const wchar_t* name, HANDLE file, DWORD flags) {
    if (flags & LOAD_LIBRARY_SEARCH_SYSTEM32) {
        SetLastError(refusal);
        return nullptr;
    }
    taken.emplace_back(name);
    return flags ? LoadLibraryExW(name, file, flags) : nullptr;
}

TEST(SystemLibrary, IsLoadedByItsFullPathWhereTheFlagIsUnknown) {
    constexpr const wchar_t* name = L"winmm.dll";
    ASSERT_FALSE(GetModuleHandleW(name)) << "loaded already, it proves nothing";
    taken.clear();
    refusal = ERROR_MOD_NOT_FOUND;
    EXPECT_FALSE(loadSystemLibrary(name, loadWithoutFlag));
    EXPECT_TRUE(taken.empty()) << "a library that is missing is looked for nowhere else";
    EXPECT_FALSE(loadSystemLibrary(L"gdiplus.dll", loadWithoutFlag));
    EXPECT_EQ(std::exchange(taken, {}), std::vector{std::wstring(L"gdiplus.dll")}) << "but for that of an assembly";

    refusal = ERROR_INVALID_PARAMETER;
    const HMODULE library = loadSystemLibrary(name, loadWithoutFlag);
    ASSERT_TRUE(library);
    wchar_t folder[MAX_PATH];
    GetSystemDirectoryW(folder, MAX_PATH);
    EXPECT_EQ(taken, std::vector{std::wstring(folder) + L"\\winmm.dll"});
    EXPECT_EQ(systemLibrary(name), library);
    for (int reference = 0; reference < 2; ++reference) FreeLibrary(library);
}

}  // namespace
}  // namespace pdx
