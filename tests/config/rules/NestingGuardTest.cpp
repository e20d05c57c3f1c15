#include "config/rules/NestingGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "config/rules/TomlConfig.h"
#include "tests/Repeated.h"

namespace pdx {
namespace {

/// The smallest limit that the text passes.
size_t depthOf(std::string_view text) {
    for (size_t limit = 0;; ++limit) {
        NestingScanner scanner(limit);
        size_t taken = 0;
        while (taken < text.size() && scanner.take(text[taken])) ++taken;
        if (taken == text.size()) return limit;
    }
}

TEST(NestingScanner, CountsHeadingsKeysArraysAndInlineTables) {
    const std::pair<std::string_view, size_t> rows[] = {
        {"", 0},
        {"a = 1\n", 0},
        {"a.b.c = 1\n", 2},
        {"a.b = 1\nc.d = 1\n", 1},
        {"a = 1.5e3\nb = 1979-05-27T07:32:00.999Z\n", 0},
        {"[a]\n[b]\n", 1},
        {"[a.b.c]\nd.e = [[1]]\n", 6},
        {"[a.b.c]\n[d]\nd = 1\n", 3},
        {"[[a.b]] # x\nc = 1", 3},
        {"a = [[1], [2, [3]], []]\nb = [1]", 3},
        {"a = [1.5, 2.5, 3.5, 1979-05-27 07:32:00.5, true, -inf]\n", 1},
        {"a = { b.c = { d = 1 }, e = 1 }", 3},
        {"a = { b.c = 1, d.e = 1 }\nf = {}", 2},
        {"a = [\n  1, # ]]]\n  2\n]\nb = [[1]]\n", 2},
    };
    for (const auto& [text, depth] : rows) EXPECT_EQ(depthOf(text), depth) << text;
}

TEST(NestingScanner, CountsNothingWithinTextsAndComments) {
    const std::string deep = repeated("[{.", 50);
    const std::string rows[] = {
        "# " + deep + "\n",
        "a = \"" + deep + "\"\n",
        "a = \"\\\"" + deep + "\\\\\"\n",
        "a = '" + deep + "\\'\n",
        "a = \"\"\"" + deep + "\n" + deep + "\"\"" + deep + "\\\"\"\"" + deep + "\"\"\"\n",
        "a = '''" + deep + "\\'''\r\n",
        "\"" + deep + "\" = 1 # " + deep + "\r\n",
        "'" + deep + "' = \"\" # " + deep,
    };
    for (const std::string& text : rows) {
        EXPECT_EQ(depthOf(text), 0u) << text;
        EXPECT_EQ(depthOf(text + "\nb = [1]"), 1u) << "and goes on behind: " << text;
    }
    EXPECT_EQ(depthOf("a = [ # " + deep + "\n \"" + deep + "\", '" + deep + "', ]\n"), 1u);
}

/// Each begins with something that looks like the beginning of a text, or closes something, but not to the parser.
TEST(NestingScanner, IsNotTakenInByWhatTheParserReadsOtherwise) {
    const std::string deep = repeated("[", 50);
    const std::string rows[] = {
        "a\"b = " + deep,
        "a = \"\"\"\r\"\"\" = \"\nb = " + deep,
        "a = [[1 x]\n,\"=" + deep,
        "a = [[1x]\n,\"=" + deep,
        "a = [[1 2]\n,\"=" + deep,
        "a = [[1-2]\n,\"=" + deep,
        "a = [[1979-05-27 x]\n,\"=" + deep,
        "a = [[0b12_]\n,\"=" + deep,
        "a = [[\"\" \"]\n,\"=" + deep,
        "}]}]}]a = " + deep,
    };
    for (const std::string& text : rows) EXPECT_GE(depthOf(text), 50u) << text;
}

TEST(NestingGuard, KeepsDeepTextsFromTheParser) {
    // The first of each pair nests as deep as is allowed, the second one level more.
    const std::pair<std::string, std::string> rows[] = {
        {"a = " + repeated("[", 100) + repeated("]", 100), "a = " + repeated("[", 101) + repeated("]", 101)},
        {"a = " + repeated("{a=", 100) + "1" + repeated("}", 100),
         "a = " + repeated("{a=", 101) + "1" + repeated("}", 101)},
        {"[a" + repeated(".a", 99) + "]\n", "[a" + repeated(".a", 100) + "]\n"},
        {"a" + repeated(".a", 100) + " = 1\n", "a" + repeated(".a", 101) + " = 1\n"},
        {"[a]\na.a = " + repeated("[", 98) + repeated("]", 98), "[a]\na.a = " + repeated("[", 99) + repeated("]", 99)},
    };
    for (const auto& [allowed, refused] : rows) {
        std::vector<std::string> errors;
        const ConfigErrorSink sink = [&](const char* function, const char* text) {
            errors.push_back(std::string(function) + ": " + text);
        };
        std::istringstream allowedStream("first = 1\n" + allowed);
        EXPECT_GE(parseConfig(allowedStream, sink).size(), 1u) << allowed;
        errors.clear();
        std::istringstream refusedStream("first = 1\n" + refused);
        EXPECT_EQ(parseConfig(refusedStream, sink).size(), 0u) << refused;
        EXPECT_THAT(errors, testing::ElementsAre("LoadConfigStream: The text is nested more than 100 levels deep"));
    }
}

TEST(NestingGuard, SurvivesMillionsOfLevels) {
    // With the parser alone each ends in an overflow of the stack.
    const std::string rows[] = {
        "a = " + repeated("[", 5'000'000),      "a = " + repeated("[\n", 3'000'000),
        "a = " + repeated("{a=", 3'000'000),    "a = " + repeated("[{a=", 2'000'000),
        "[" + repeated("a.", 3'000'000) + "a]", repeated("a.", 3'000'000) + "a = 1",
    };
    for (const std::string& text : rows) {
        std::istringstream stream(text);
        size_t errors = 0;
        EXPECT_EQ(parseConfig(stream, [&](const char*, const char*) { ++errors; }).size(), 0u);
        EXPECT_EQ(errors, 1u) << text.substr(0, 20);
    }
}

}  // namespace
}  // namespace pdx
