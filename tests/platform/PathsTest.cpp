#include "platform/Paths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <shlobj.h>

#include "platform/PathFunctions.h"
#include "tests/platform/CapturedLog.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

using testing::ElementsAre;

TEST(Paths, ReadsTheEnvironmentUpToItsLimit) {
    const std::wstring longest(4096, L'x');
    const std::pair<std::wstring, std::wstring> cases[] = {
        {L"ü\U0001F600", L"ü\U0001F600"}, {L"x", L"x"}, {longest, longest}, {longest + L"x", L""}};
    for (const auto& [value, text] : cases) {
        const ScopedVariable variable(L"PDX_PATHS_TEST", value);
        EXPECT_EQ(getEnvironmentText(L"PDX_PATHS_TEST"), text);
    }
    EXPECT_EQ(getEnvironmentText(L"PDX_PATHS_TEST"), L"");
}

/// What a function returns, and what it makes of a path in a buffer of the given size.
using Outcome = std::pair<HRESULT, std::wstring>;

template <typename Function, typename... More>
Outcome tryOut(Function function, const std::wstring& path, size_t size, More... more) {
    std::vector<wchar_t> buffer(std::max(size, path.size() + 1));
    std::ranges::copy(path, buffer.begin());
    const HRESULT result = function(buffer.data(), size, more...);
    return {result, buffer.data()};
}

TEST(PathFunctions, TheStandInsReturnWhatTheSystemReturns) {
    const PathFunctions standIn = bindPathFunctions(nullptr);
    const PathFunctions& system = pathFunctions();
    ASSERT_NE(standIn.append, system.append) << "this system has them";
    ASSERT_NE(standIn.removeFileSpec, system.removeFileSpec);
    ASSERT_NE(standIn.addBackslash, system.addBackslash);
    for (const std::wstring path : {L"C:\\a\\b", L"C:\\a\\", L"C:\\a", L"C:\\", L"\\\\server\\share\\a"}) {
        EXPECT_EQ(tryOut(standIn.removeFileSpec, path, 260), tryOut(system.removeFileSpec, path, 260)) << path;
        EXPECT_EQ(tryOut(standIn.addBackslash, path, 260), tryOut(system.addBackslash, path, 260)) << path;
        for (const wchar_t* more : {L"c", L"\\c", L"c\\d\\", L"..\\c"})
            EXPECT_EQ(tryOut(standIn.append, path, 260, more), tryOut(system.append, path, 260, more))
                << path << " and " << more;
    }
}

TEST(PathFunctions, TheStandInsKeepWithinTheBuffer) {
    const PathFunctions standIn = bindPathFunctions(nullptr);
    const std::wstring path = L"C:\\" + std::wstring(196, L'a');
    const std::wstring fits(59, L'b');
    EXPECT_EQ(tryOut(standIn.append, path, 1000, fits.c_str()), (Outcome{S_OK, path + L"\\" + fits}));
    EXPECT_EQ(tryOut(standIn.append, path, 1000, (fits + L"b").c_str()), (Outcome{E_OUTOFMEMORY, path}));
    EXPECT_EQ(tryOut(standIn.append, L"C:\\a", 6, L"bc"), (Outcome{E_OUTOFMEMORY, L"C:\\a"}));
    EXPECT_EQ(tryOut(standIn.addBackslash, L"C:\\a", 6), (Outcome{S_OK, L"C:\\a\\"}));
    EXPECT_EQ(tryOut(standIn.addBackslash, L"C:\\a", 5),
              (Outcome{HRESULT_FROM_WIN32(ERROR_INSUFFICIENT_BUFFER), L"C:\\a"}));
}

}  // namespace
}  // namespace pdx
