#include "platform/rules/SubKeyWalk.h"

#include <gtest/gtest.h>

#include <vector>

namespace pdx {
namespace {

TEST(SubKeyWalk, StopsAtTwoErrorsAndPassesOverTheOthers) {
    const struct {
        std::vector<SubKeyAnswer> answers;
        std::vector<std::wstring> seen;
        const char* what;
    } cases[] = {
        {{{259, {}}}, {}, "no subkeys"},
        {{{6, {}}}, {}, "an invalid handle"},
        {{{0, L"a"}, {0, L"b"}, {259, {}}}, {L"a", L"b"}, "two subkeys"},
        {{{0, L"a"}, {6, {}}, {0, L"b"}}, {L"a"}, "a handle closed meanwhile"},
        {{{0, L"a"}, {234, {}}, {0, L"b"}, {259, {}}}, {L"a", L"b"}, "a name that is too long"},
        {{{234, {}}, {5, {}}, {2, {}}, {-1, {}}, {0, L"b"}, {259, {}}}, {L"b"}, "other errors"},
        {{{0, L"stop"}, {0, L"b"}, {259, {}}}, {L"stop"}, "a function that has enough"},
    };
    for (const auto& row : cases) {
        std::vector<std::wstring> seen;
        walkSubKeys([&](uint32_t index) { return row.answers.at(index); },
                    [&](const std::wstring& name) {
                        seen.push_back(name);
                        return name != L"stop";
                    });
        EXPECT_EQ(seen, row.seen) << row.what;
    }
}

}  // namespace
}  // namespace pdx
