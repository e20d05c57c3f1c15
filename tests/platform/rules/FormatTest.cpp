#include "platform/rules/Format.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pdx {
namespace {

using namespace std::literals;

std::string formatted(std::string_view format, const std::vector<FormatArgument>& arguments, size_t capacity = 4096) {
    std::vector<char> buffer(capacity, 'x');
    const size_t length = formatPrintf(buffer, format, arguments);
    EXPECT_EQ(buffer[length], '\0');
    return std::string(buffer.data(), length);
}

TEST(FormatPrintf, FollowsC99AndKeepsAPlaceholderWithoutArgument) {
    const struct {
        std::string_view format;
        std::vector<FormatArgument> arguments;
        std::string_view result;
    } rows[] = {
        {"%s|%ls|%hs", {"a"sv, "b"sv, "c"sv}, "a|b|c"},
        {"%5s|%-5s|%.2s", {"ab"sv, "ab"sv, "abc"sv}, "   ab|ab   |ab"},
        {"%*s|%-*s|%.*s", {4, "a"sv, 3, "b"sv, 1, "cd"sv}, "   a|b  |c"},
        {"%d %i %u", {-1, int64_t{-5'000'000'000}, 4'000'000'000u}, "-1 -5000000000 4000000000"},
        {"%lld %llu", {INT64_MIN, UINT64_MAX}, "-9223372036854775808 18446744073709551615"},
        {"%08x %X %#x %o", {0xa7ff0643u, 255, 255, 8}, "a7ff0643 FF 0xff 10"},
        {"%08x %u %x", {-1, -1, int64_t{-1}}, "ffffffff 4294967295 ffffffffffffffff"},
        {"%d %d", {0x80004005u, uint64_t{0x80004005}}, "-2147467259 2147500037"},
        {"%+d % d %05d %.3d", {1, 1, -42, 7}, "+1  1 -0042 007"},
        {"%0.4f %e %g", {12.34567, 1.0, 0.5}, "12.3457 1.000000e+00 0.5"},
        {"%c%c 100%%", {'o', 'k'}, "ok 100%"},
        {"%s %d", {}, "%s %d"},
        {"%s then %s", {"one"sv}, "one then %s"},
        {"50% done %", {}, "50% done %"},
        {"%n%*d%y", {}, "%n%*d%y"},
        {"%d %s", {"text"sv, 5}, "%d text"},
        {"%s", {5}, "%s"},
        {"%99999999999d", {5}, "%99999999999d"},
    };
    for (const auto& row : rows) EXPECT_EQ(formatted(row.format, row.arguments), row.result) << row.format;
}

TEST(FormatPrintf, CutsAtTheBuffersEnd) {
    const std::string longText(5000, 'a');
    EXPECT_EQ(formatted(longText, {}), std::string(4095, 'a'));
    EXPECT_EQ(formatted("%900d", {1}, 16), std::string(15, ' '));
    EXPECT_EQ(formatted("%600d|%-600d|", {1, 2}), std::string(599, ' ') + "1|2" + std::string(599, ' ') + "|");
    EXPECT_EQ(formatted("%500.400f", {1e308}).size(), 309u + 1 + 400) << "longer than the width";
    EXPECT_EQ(formatted("%2147483647s", {"x"sv}, 16), std::string(15, ' '));
}

}  // namespace
}  // namespace pdx
