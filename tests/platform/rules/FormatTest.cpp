#include "platform/rules/Format.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pdx {
namespace {

std::string formatted(std::string_view format, const std::vector<FormatArgument>& arguments, size_t capacity = 4096) {
    std::vector<char> buffer(capacity, 'x');
    const size_t length = formatPrintf(buffer, format, arguments);
    EXPECT_EQ(buffer[length], '\0');
    return std::string(buffer.data(), length);
}

struct FormatCase {
    std::string_view format;
    std::vector<FormatArgument> arguments;
    std::string_view result;
};

TEST(FormatPrintf, FollowsC99) {
    const FormatCase cases[] = {
        {"plain", {}, "plain"},
        {"%s|%ls|%hs", {std::string_view("a"), std::string_view("b"), std::string_view("c")}, "a|b|c"},
        {"%5s|%-5s|%.2s", {std::string_view("ab"), std::string_view("ab"), std::string_view("abc")}, "   ab|ab   |ab"},
        {"%*s|%-*s|%.*s",
         {4, std::string_view("a"), 3, std::string_view("b"), 1, std::string_view("cd")},
         "   a|b  |c"},
        {"%d %i %u", {-1, int64_t{-5'000'000'000}, 4'000'000'000u}, "-1 -5000000000 4000000000"},
        {"%lld %llu", {INT64_MIN, UINT64_MAX}, "-9223372036854775808 18446744073709551615"},
        {"%08x %X %#x %o", {0xa7ff0643u, 255, 255, 8}, "a7ff0643 FF 0xff 10"},
        {"%08x %u %x", {-1, -1, int64_t{-1}}, "ffffffff 4294967295 ffffffffffffffff"},
        {"%d %d", {0x80004005u, uint64_t{0x80004005}}, "-2147467259 2147500037"},
        {"%+d % d %05d %.3d", {1, 1, -42, 7}, "+1  1 -0042 007"},
        {"%0.4f %e %g", {12.34567, 1.0, 0.5}, "12.3457 1.000000e+00 0.5"},
        {"%c%c", {'o', 'k'}, "ok"},
        {"100%%", {}, "100%"},
    };
    for (const FormatCase& row : cases) EXPECT_EQ(formatted(row.format, row.arguments), row.result) << row.format;
}

TEST(FormatPrintf, LeavesWhatItCannotFillAsItStands) {
    const FormatCase cases[] = {
        {"%s %d", {}, "%s %d"},
        {"%s then %s", {std::string_view("one")}, "one then %s"},
        {"50% done", {}, "50% done"},
        {"ends in %", {}, "ends in %"},
        {"%n%*d%y", {}, "%n%*d%y"},
        {"%d", {std::string_view("text")}, "%d"},
        {"%s", {5}, "%s"},
        {"%99999999999d", {5}, "%99999999999d"},
    };
    for (const FormatCase& row : cases) EXPECT_EQ(formatted(row.format, row.arguments), row.result) << row.format;
}

TEST(FormatPrintf, CutsAtTheBuffersEnd) {
    const std::string longText(5000, 'a');
    EXPECT_EQ(formatted("%s", {std::string_view(longText)}), std::string(4095, 'a'));
    EXPECT_EQ(formatted(longText, {}), std::string(4095, 'a'));
    EXPECT_EQ(formatted("%900d", {1}, 16), std::string(15, ' '));
    EXPECT_EQ(formatted("%600d|%-600d|", {1, 2}), std::string(599, ' ') + "1|2" + std::string(599, ' ') + "|");
    EXPECT_EQ(formatted("%2147483647s", {std::string_view("x")}, 16), std::string(15, ' '));
}

}  // namespace
}  // namespace pdx
