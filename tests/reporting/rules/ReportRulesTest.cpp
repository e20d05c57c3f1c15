#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <tuple>

#include "platform/rules/Utf8.h"
#include "reporting/rules/CheckValue.h"
#include "reporting/rules/CrashSignature.h"
#include "reporting/rules/LogLines.h"

namespace pdx {
namespace {

TEST(RequestCheckValue, FoldsSignedBytesWithAMaskOnEverySecond) {
    const std::pair<const char*, uint16_t> rows[] = {
        {"", 0},
        {"AB", (65 * 5 + 66) ^ 0x4B1D},
        {"\xC3", 0xFFC3},  // a byte above 127 counts down
        {"ABC", static_cast<uint16_t>(67 + ((65 * 5 + 66) ^ 0x4B1D) * 5)},
    };
    for (const auto& [text, value] : rows) EXPECT_EQ(requestCheckValue(text), value) << text;
}

TEST(CrashSignature, IsMadeOfTheModulesAndTheLowWordOfTheFault) {
    StackHash hash;
    EXPECT_EQ(crashSignature(hash, 0x1234ABCD), "25-ABCD");
    hash.add("foo");
    hash.add("bar");
    EXPECT_EQ(crashSignature(hash, 0x0000000F), "E8-000F") << "the published value of \"foobar\" ends so";
}

TEST(CrashSignature, OnlySeverityErrorIsFatal) {
    for (const uint32_t code : {0xC0000005u, 0xE0434352u}) EXPECT_TRUE(isFatalException(code)) << code;
    for (const uint32_t code : {0x80000003u, 0x406D1388u, 0u}) EXPECT_FALSE(isFatalException(code)) << code;
}

/// A user whose folder has an 8.3 form.
const LogScrubber annabella(makeScrubTexts(L"C:\\Users\\Annabella\\", L"C:\\Users\\ANNABE~1\\", L"Annabella",
                                           std::equal_to<std::wstring_view>()));

struct ReadLog {
    std::string text;
    size_t largestPiece = 0;
    bool wholeCharacters = true;  ///< in each piece
};

ReadLog readLog(LogEncoding encoding, std::string_view bytes, size_t blockSize) {
    ReadLog log;
    const TakeText take = [&](std::string_view piece) {
        log.text += piece;
        log.largestPiece = std::max(log.largestPiece, piece.size());
        log.wholeCharacters = log.wholeCharacters && isWellFormedUtf8(piece);
    };
    LogReader reader(encoding, annabella);
    for (size_t at = 0; at < bytes.size(); at += blockSize) reader.feed(bytes.substr(at, blockSize), take);
    reader.finish(take);
    return log;
}

std::string units(std::u16string_view text) {
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

TEST(LogReader, ReturnsScrubbedUtf8WhereverABlockEnds) {
    using enum LogEncoding;
    const std::string newName = "\xEF\xBF\xBD";  // replaces what is no character
    const std::tuple<LogEncoding, std::string, std::string> rows[] = {
        {utf8, "a\r\nC:\\Users\\b\n\nC", "a\r\nC:\\Users\\b\n\nC"},
        {utf8, "C:\\Users\\Annabella\\a;C:\\Users\\Annabella\\b Annabella\n",
         "C:\\Users\\####\\a;C:\\Users\\####\\b Annabella\n"},
        {utf8, "x\nC:/Users/Annabella/\nC:\\Users\\ANNABE~1\\ä\nC:/Users/ANNABE~1/",
         "x\nC:/Users/####/\nC:\\Users\\####\\ä\nC:/Users/####/"},
        {utf8, "\xFF\xC3(C:\\Users\\Annabella\\\xE0\x80 \xED\xA0\x80\n\U0001F600\xF0\x9F\x98",
         newName + newName + "(C:\\Users\\####\\" + newName + newName + " " + newName + newName + newName +
             "\n\U0001F600" + newName},
        // Bytes of a line feed at an odd place, or without a zero, are none.
        {utf16, units(u"\xFEFF\x0A05\x0100\x0A0A\x010A C:\\Users\\Annabella\\\n\xD83D\xDE00\xDE00\xD83D"),
         "\uFEFF\u0A05\u0100\u0A0A\u010A C:\\Users\\####\\\n\U0001F600" + newName + newName},
        {utf16, units(u"C:/Users/ANNABE~1/x\n") + "a", "C:/Users/####/x\n"},  // half a letter that is being written
    };
    for (const auto& [encoding, bytes, text] : rows)
        for (const size_t blockSize : {1u, 2u, 3u, 5u, 7u, 1000u})
            EXPECT_EQ(readLog(encoding, bytes, blockSize).text, text) << "in blocks of " << blockSize;
    EXPECT_EQ(logEncodingOf("\xFF\xFE z"), utf16);
    EXPECT_EQ(logEncodingOf("\xFE\xFF"), utf8);
}

TEST(LogReader, CutsALongLineOutsideTheTextToScrub) {
    constexpr size_t bound = 1 << 20;
    const std::pair<std::string, std::string> parts[] = {
        {"C:\\Users\\Annabella\\", "C:\\Users\\####\\"},
        {"C:/Users/ANNABE~1/", "C:/Users/####/"},
        {"\u30b2", "\u30b2"},
        {"Command line: [s KESTREL_AUTHCODE=\"a b\" x]\r", "Command line: [s KESTREL_AUTHCODE=#### x]\r"},
    };
    const std::string tail = std::string(LogScrubber::lookAhead, 'y') + "\n";
    for (const auto& [part, scrubbed] : parts)
        for (const size_t before : {size_t{0}, size_t{1}, part.size() / 2, part.size() - 1, part.size()}) {
            const std::string head(bound - before, 'x');
            const ReadLog log = readLog(LogEncoding::utf8, head + part + tail, 0x40000);
            SCOPED_TRACE(part + " from " + std::to_string(before) + " bytes before the cut");
            EXPECT_TRUE(log.text == head + scrubbed + tail);
            EXPECT_LE(log.largestPiece, bound) << "held at once";
            EXPECT_TRUE(log.wholeCharacters);
        }
}

TEST(LogScrubber, HidesTheLoginCode) {
    const std::pair<const char*, const char*> rows[] = {
        {"INFO  (f:1) variable=[KESTREL_AUTHCODE]; result=[a] b]\r\nx",
         "INFO  (f:1) variable=[KESTREL_AUTHCODE]; result=[####]\r\nx"},
        {"variable=[KESTREL_AUTHCODE]; result=[]", "variable=[KESTREL_AUTHCODE]; result=[]"},
        {"variable=[PDX_REPAIR]; result=[KESTREL]", "variable=[PDX_REPAIR]; result=[KESTREL]"},
        {"Command line: [\"C:\\s.exe\" \"KESTREL_AUTHCODE=a b\" x=]]\r\n",
         "Command line: [\"C:\\s.exe\" \"KESTREL_AUTHCODE=####\" x=]]\r\n"},
        {"Command line: [s KES\"TREL\"_AUTHCODE=a", "Command line: [s KES\"TREL\"_AUTHCODE=####"},
        {"Command line: [s /quiet]\nKESTREL_AUTHCODE=a", "Command line: [s /quiet]\nKESTREL_AUTHCODE=a"},
        // As the engine has them of a bundle in which the variable is not hidden.
        {"i009: Command Line: 'KESTREL_AUTHCODE=a x=\"y z\"'", "i009: Command Line: 'KESTREL_AUTHCODE=#### x=\"y z\"'"},
        {"Setting string variable 'KESTREL_AUTHCODE' to value 'a'b'\n",
         "Setting string variable 'KESTREL_AUTHCODE' to value '####'\n"},
        {"Variable: KESTREL_AUTHCODE = a b\nVariable: KESTREL = a\n",
         "Variable: KESTREL_AUTHCODE = ####\nVariable: KESTREL = a\n"},
    };
    for (const auto& [line, hidden] : rows) EXPECT_EQ(readLog(LogEncoding::utf8, line, 1000).text, hidden);
}

}  // namespace
}  // namespace pdx
