#include "platform/rules/LogLine.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

TEST(LogLine, EachLevelHasItsWordAndTheEnginesLevel) {
    const struct {
        int32_t level;
        std::wstring_view word;
        int32_t engineLevel;
    } cases[] = {
        {-1, L"TRACE", 2}, {0, L"ERROR", 4}, {1, L"WARN ", 1}, {2, L"INFO ", 1},
        {3, L"DEBUG", 3},  {4, L"TRACE", 2}, {5, L"TRACE", 2}, {INT32_MIN, L"TRACE", 2},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(logLevelFacts(row.level).word, row.word) << row.level;
        EXPECT_EQ(logLevelFacts(row.level).engineLevel, row.engineLevel) << row.level;
    }
}

TEST(LogLine, HasItsFieldsInOrder) {
    EXPECT_EQ(formatLogLine(L'*', L"INFO ", L"Class::name", 42, L"text {} %s"),
              L"PDXBA* INFO  (Class::name:42) text {} %s");
    EXPECT_EQ(formatLogLine(L' ', L"ERROR", L"", -1, L""), L"PDXBA  ERROR (:-1) ");
}

}  // namespace
}  // namespace pdx
