#include "config/StringFile.h"

#include <gtest/gtest.h>

#include <thread>

namespace pdx {
namespace {

TEST(StringFile, ReadsKeysAndTextsInTheFilesOrder) {
    struct {
        const char* xml;
        StringTable strings;
    } const cases[] = {
        {"<locStrings/>", {}},
        {"<other/>", {}},
        {R"(<locStrings><locString Key="A">one</locString><locString Key="b">two</locString></locStrings>)",
         {{L"a", L"one"}, {L"b", L"two"}}},
        {R"(<locStrings><locString Key="Same">first</locString><locString Key="SAME">last</locString></locStrings>)",
         {{L"same", L"last"}}},
        // Entities of text and attribute, markup kept as text, letters of three bytes.
        {"<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<locStrings locale=\"x\"><locString "
         "Key=\"q&amp;\xC3\x84\">&lt;a href=\"u\"&gt;\xE2\x80\xA6&lt;/a&gt;</locString></locStrings>",
         {{L"q&\u00E4", L"<a href=\"u\">\u2026</a>"}}},
        {"<locStrings><locString Key=\"k\">one\n\ntwo</locString></locStrings>", {{L"k", L"one\n\ntwo"}}},
        {"<locStrings><locString Key=\"k\">one\r\n\r\ntwo</locString></locStrings>", {{L"k", L"one\n\ntwo"}}},
        {R"(<locStrings><locString Key="k"/><locString Key="">t</locString></locStrings>)", {{L"k", {}}, {{}, L"t"}}},
        // Only direct children of locStrings count, wherever that stands; names and the attribute mind their case.
        {R"(<r><locString Key="no">t</locString><locStrings><x><locString Key="no">t</locString></x>)"
         R"(<locString Key="yes">t</locString><locString key="no">t</locString><LocString Key="no">t</LocString>)"
         R"(<locString>t</locString></locStrings></r>)",
         {{L"yes", L"t"}}},
    };
    for (const auto& row : cases) {
        const auto strings = readStringFile(row.xml);
        ASSERT_TRUE(strings) << row.xml;
        EXPECT_EQ(*strings, row.strings) << row.xml;
    }
}

TEST(StringFile, GivesNothingForWhatIsNoXml) {
    const std::string_view cases[] = {
        "",
        "text",
        "<locStrings>",
        "<locStrings></locString>",
        "<locStrings><locString Key=\"a\">x</locStrings>",
        "<locStrings><locString Key=a>x</locString></locStrings>",
        "<locStrings>&undefined;</locStrings>",
        "<locStrings/><locStrings/>",
        std::string_view("<locStrings>\0</locStrings>", 26),
    };
    for (const std::string_view xml : cases) EXPECT_FALSE(readStringFile(xml)) << xml;
}

TEST(StringFile, GivesNothingOnAThreadWithoutCom) {
    bool read = true;
    std::thread([&read] { read = readStringFile("<locStrings/>").has_value(); }).join();
    EXPECT_FALSE(read);
}

}  // namespace
}  // namespace pdx
