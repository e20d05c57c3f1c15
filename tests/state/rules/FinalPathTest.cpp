#include "state/rules/FinalPath.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace pdx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A system with the final paths of a map, which records the queries.
struct FakeSystem {
    std::map<std::wstring, std::wstring> finalPaths;
    std::vector<std::wstring> asked;
    size_t longest = 1000;

    PathSystem functions() {
        return {[this](const std::wstring& path) {
                    asked.push_back(path);
                    const auto found = finalPaths.find(path);
                    return found == finalPaths.end() ? std::wstring() : found->second;
                },
                [this](const std::wstring& path, const std::wstring& component) {
                    std::wstring joined = path;
                    if (!joined.empty() && !component.empty() && joined.back() != L'\\') joined += L'\\';
                    joined += component;
                    return joined.size() > longest ? std::wstring() : joined;
                }};
    }
};

struct WalkCase {
    const char* name;
    std::wstring prefix;
    std::wstring path;
    std::wstring expected;
    ExpectedPathProblem problem;
};

TEST(ExpectedFinalPath, TrustsTheFolderAndNothingBelowIt) {
    const FakeSystem world{{{L"C:", L"\\\\?\\C:\\"},
                            {L"C:\\Users", L"\\\\?\\C:\\Users"},
                            {L"C:\\Users\\ann", L"\\\\?\\C:\\Users\\ann"},
                            {L"C:\\Users\\ann\\Temp", L"\\\\?\\C:\\Users\\ann\\Temp"},
                            {L"C:\\Users\\ANN~1", L"\\\\?\\C:\\Users\\ann"},
                            {L"C:\\Users\\ANN~1\\TEMP", L"\\\\?\\C:\\Users\\ann\\Temp"},
                            {L"C:\\Users\\ann\\Temp\\link", L"\\\\?\\C:\\elsewhere"},
                            {L"C:\\Case", L"\\\\?\\c:\\users\\ann\\temp"}},
                           {},
                           1000};
    const std::wstring temp = L"\\\\?\\C:\\Users\\ann\\Temp";
    using enum ExpectedPathProblem;
    const WalkCase rows[] = {
        {"a file in it", temp, L"C:\\Users\\ann\\Temp\\a.log", temp + L"\\a.log", none},
        {"a file deep in it", temp, L"C:\\Users\\ann\\Temp\\x\\y\\a.log", temp + L"\\x\\y\\a.log", none},
        {"forward slashes", temp, L"C:/Users/ann/Temp/x/a.log", temp + L"\\x\\a.log", none},
        {"empty components", temp, L"C:\\\\Users\\ann\\Temp\\\\a.log\\", temp + L"\\a.log", none},
        {"a short way to it", temp, L"C:\\Users\\ANN~1\\TEMP\\a.log", temp + L"\\a.log", none},
        {"a link below it is taken as spelt", temp, L"C:\\Users\\ann\\Temp\\link\\a.log", temp + L"\\link\\a.log",
         none},
        {"the folder itself", temp, L"C:\\Users\\ann\\Temp", temp, none},
        {"a file beside it", temp, L"C:\\Users\\ann\\a.log", L"", neverFound},
        {"a prefix in another case", temp, L"C:\\Case\\a.log", L"", neverFound},
        {"a relative path", temp, L"a.log", L"", neverFound},
        {"an empty path", temp, L"", L"", neverFound},
        {"a share", temp, L"\\\\server\\share\\a.log", L"", neverFound},
        {"a prefix that is no final path", L"C:\\Users\\ann\\Temp", L"C:\\Users\\ann\\Temp\\a.log", L"", badPrefix},
        {"another prefix", L"\\\\.\\C:\\", L"C:\\a.log", L"", badPrefix},
        {"the root as prefix", L"\\\\?\\C:\\", L"C:\\a\\b", L"\\\\?\\C:\\a\\b", none},
        {"no prefix", L"", L"C:\\Users\\ANN~1\\a.log", L"\\\\?\\C:\\Users\\ANN~1\\a.log", none},
        {"no prefix and no path", L"", L"", L"\\\\?\\", none},
    };
    for (const WalkCase& row : rows) {
        FakeSystem system = world;
        const ExpectedPath result = expectedFinalPath(row.prefix, row.path, system.functions());
        EXPECT_EQ(result.path, row.expected) << row.name;
        EXPECT_EQ(result.problem, row.problem) << row.name;
    }
}

TEST(ExpectedFinalPath, QueriesOnlyThePathToTheFolder) {
    FakeSystem system{{{L"C:\\Temp", L"\\\\?\\C:\\Temp"}}, {}, 1000};
    expectedFinalPath(L"\\\\?\\C:\\Temp", L"C:\\Temp\\a\\b", system.functions());
    EXPECT_THAT(system.asked, ElementsAre(L"C:", L"C:\\Temp"));
    system.asked.clear();
    expectedFinalPath(L"", L"C:\\Temp\\a\\b", system.functions());
    EXPECT_THAT(system.asked, IsEmpty());
}

TEST(ExpectedFinalPath, FailsIfAComponentCannotBeJoined) {
    const std::wstring longName(30, L'n');
    const std::pair<std::wstring, ExpectedPathProblem> rows[] = {
        {L"C:\\Temp\\" + longName, ExpectedPathProblem::notJoinable},
        {longName + L"\\C:\\Temp\\a", ExpectedPathProblem::neverFound}};
    for (const auto& [path, problem] : rows) {
        FakeSystem system{{{L"C:\\Temp", L"\\\\?\\C:\\Temp"}}, {}, 20};
        const ExpectedPath result = expectedFinalPath(L"\\\\?\\C:\\Temp", path, system.functions());
        EXPECT_EQ(result.path, L"") << path.size();
        EXPECT_EQ(result.problem, problem) << path.size();
    }
}

TEST(WithoutFinalPathStart, RemovesThePrefixOfFinalPaths) {
    EXPECT_EQ(withoutFinalPathStart(L"\\\\?\\C:\\Temp\\a.log"), L"C:\\Temp\\a.log");
    EXPECT_EQ(withoutFinalPathStart(L"\\\\?\\UNC\\server\\share\\a.log"), L"\\\\server\\share\\a.log");
    EXPECT_EQ(withoutFinalPathStart(L""), L"");
}

TEST(LockError, RefusesALinkAndEveryOtherPlace) {
    const std::wstring path = L"\\\\?\\C:\\Temp\\a.log";
    EXPECT_EQ(lockError(0x20, path, true), std::nullopt);
    EXPECT_EQ(lockError(0x420, path, true), 4395u);
    EXPECT_EQ(lockError(0x20, L"", false), 3u);
    EXPECT_EQ(lockError(0x20, path, false), 0u);
}

TEST(WithoutSessionFolder, RemovesOnlyTheFolderOfThisSession) {
    const std::tuple<const wchar_t*, uint32_t, const wchar_t*> rows[] = {
        {L"C:\\Temp\\2\\", 2, L"C:\\Temp\\"},      {L"C:\\Temp\\12\\", 2, L"C:\\Temp\\12\\"},
        {L"C:\\Temp\\2\\", 1, L"C:\\Temp\\2\\"},   {L"C:\\Temp\\2", 2, L"C:\\Temp\\2"},
        {L"C:\\Temp\\02\\", 2, L"C:\\Temp\\02\\"}, {L"C:\\2\\2\\", 2, L"C:\\2\\"},
        {L"C:\\Temp\\0\\", 0, L"C:\\Temp\\"},      {L"", 0, L""},
    };
    for (const auto& [path, session, result] : rows) EXPECT_EQ(withoutSessionFolder(path, session), result) << session;
}

}  // namespace
}  // namespace pdx
