#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reporting/rules/CheckValue.h"
#include "reporting/rules/CrashSignature.h"
#include "reporting/rules/LogLines.h"
#include "reporting/rules/ReportText.h"

namespace pdx {
namespace {

TEST(RequestCheckValue, FoldsSignedBytesWithAMaskOnEverySecond) {
    const struct {
        std::string text;
        uint16_t value;
    } rows[] = {
        {"", 0},
        {"A", 65},
        {"AB", (65 * 5 + 66) ^ 0x4B1D},
        {"\xC3", 0xFFC3},  // a byte above 127 counts down
        {"ABC", static_cast<uint16_t>(67 + ((65 * 5 + 66) ^ 0x4B1D) * 5)},
    };
    for (const auto& row : rows) EXPECT_EQ(requestCheckValue(row.text), row.value) << row.text;
}

TEST(CrashSignature, ComesOfTheModulesAndTheLowWordOfTheFault) {
    StackHash none;
    EXPECT_EQ(crashSignature(none, 0x1234ABCD), "25-ABCD");
    StackHash one;
    one.add("a");  // the published value of "a" ends in 8C
    EXPECT_EQ(crashSignature(one, 0x0000000F), "8C-000F");
    StackHash ab, a_b;
    ab.add("foobar");  // the published value ends in E8
    a_b.add("foo");
    a_b.add("bar");
    EXPECT_EQ(crashSignature(ab, 0), "E8-0000");
    EXPECT_EQ(ab.get(), a_b.get());
}

TEST(CrashSignature, OnlySeverityErrorIsFatal) {
    for (const uint32_t code : {0xC0000005u, 0xE0434352u, 0xFFFFFFFFu}) EXPECT_TRUE(isFatalException(code)) << code;
    for (const uint32_t code : {0x80000003u, 0x40010006u, 0x406D1388u, 0u}) EXPECT_FALSE(isFatalException(code)) << code;
}

std::vector<std::string> linesOf(LogEncoding encoding, const std::vector<std::string>& blocks) {
    LineCutter cutter(encoding);
    std::vector<std::string> lines;
    const auto take = [&](std::string_view line) { lines.emplace_back(line); };
    for (const std::string& block : blocks) cutter.feed(block, take);
    cutter.finish(take);
    return lines;
}

TEST(LineCutter, CutsAtLineFeedsAndCarriesLinesOverBlocks) {
    using Lines = std::vector<std::string>;
    const auto wide = [](std::u16string_view text) {
        std::string bytes;
        for (const char16_t unit : text) {
            bytes += static_cast<char>(unit & 0xFF);
            bytes += static_cast<char>(unit >> 8);
        }
        return bytes;
    };
    EXPECT_EQ(linesOf(LogEncoding::utf8, {"a\r\nb\n\nc"}), (Lines{"a\r\n", "b\n", "\n", "c"}));
    EXPECT_EQ(linesOf(LogEncoding::utf8, {"ab", "cd", "e\nf\n"}), (Lines{"abcde\n", "f\n"}));
    EXPECT_EQ(linesOf(LogEncoding::utf8, {""}), Lines{});
    // Units whose low or high byte is that of a line feed are none.
    EXPECT_EQ(linesOf(LogEncoding::utf16, {wide(u"\xFEFF" u"a\n"), wide(u"\x0A0A\x010A" u"b"), wide(u"\nc")}),
              (Lines{wide(u"\xFEFF" u"a\n"), wide(u"\x0A0A\x010A" u"b\n"), wide(u"c")}));
    EXPECT_EQ(linesOf(LogEncoding::utf16, {wide(u"a") + "\n"}), Lines{wide(u"a") + "\n"});  // half a letter at the end
    EXPECT_EQ(logEncodingOf("\xFF\xFE" "a"), LogEncoding::utf16);
    EXPECT_EQ(logEncodingOf("\xFE\xFF"), LogEncoding::utf8);
}

TEST(ReportText, TellsUserAndMachineOnOneLineEach) {
    ErrorReport report;
    report.bastionId = "1d";
    report.machineHash = "2e";
    report.clientVersion = "12.37.0.5294";
    EXPECT_EQ(userData(report),
              R"({"CE Number":"","Category":"100","Client Version":"12.37.0.5294","Free text":"","User Name":"2e",)"
              R"("UserID":"1d"})");
    EXPECT_EQ(hardwareSurvey("Win 10", {10, 0, 19045, 1}, "AMD64", "2e"),
              R"({"os":{"architecture":"AMD64","name":"Win 10","version":"10.0.19045"},"system":{"machineId":"2e"}})");
    EXPECT_EQ(sectionStart("a.log") + sectionEnd("a.log"), "@@@START@@@a.log\r\n@@@END@@@a.log\r\n");
    EXPECT_EQ(packageName("133"), "errorReporter_133.gz");
}

}  // namespace
}  // namespace pdx
