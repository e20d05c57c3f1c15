// Strings: their files, and the translator over them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "config/Resources.h"
#include "config/StringFile.h"
#include "config/Translator.h"
#include "tests/platform/CapturedLog.h"

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
        // Entities of text and attribute, markup kept as text, letters of three bytes; keys lowered from A to Z.
        {"<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<locStrings locale=\"x\"><locString "
         "Key=\"q&amp;\xC3\x84\">&lt;a href=\"u\"&gt;\xE2\x80\xA6&lt;/a&gt;</locString></locStrings>",
         {{L"q&\u00C4", L"<a href=\"u\">\u2026</a>"}}},
        {"<locStrings><locString Key=\"k\">one\n\ntwo</locString></locStrings>", {{L"k", L"one\n\ntwo"}}},
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
    const std::string_view cases[] = {"", "<locStrings>", std::string_view("<locStrings>\0</locStrings>", 26)};
    for (const std::string_view xml : cases) EXPECT_FALSE(readStringFile(xml)) << xml;
}

TEST(StringFile, GivesNothingOnAThreadWithoutCom) {
    bool read = true;
    std::thread([&read] { read = readStringFile("<locStrings/>").has_value(); }).join();
    EXPECT_FALSE(read);
}

using testing::ElementsAre;
using testing::IsEmpty;

class TranslatorTest : public testing::Test {
  protected:
    CapturedLog log;
};

TEST_F(TranslatorTest, FindsAKeyInAnyCase) {
    Translator translator;
    ASSERT_TRUE(translator.Load(L"en"));
    for (const wchar_t* key : {L"INSTALLER_ERROR_UNKNOWN_TITLE", L"installer_error_unknown_title"}) {
        EXPECT_EQ(translator.translate(key), L"Something went wrong\u2026");
    }
    EXPECT_EQ(translator.translate(L"not-now"), L"Not now");
    EXPECT_EQ(translator.translate(L"REPAIR"), L"Repair");
}

TEST_F(TranslatorTest, ShowsAnUnknownKeyAsItWasGiven) {
    const Translator translator;
    EXPECT_EQ(translator.translate(L"No_Such_KEY"), L"No_Such_KEY");
    EXPECT_EQ(translator.translate(L""), L"");
    // The bundle has variables for these two names; they keep what the bundle's author wrote.
    for (const wchar_t* key :
         {L"INSTALLER_ERROR_REPORTER_SHORTCUT_TITLE", L"INSTALLER_RECOVERY_HELPER_SHORTCUT_TITLE"}) {
        std::wstring text = L"untouched";
        EXPECT_FALSE(translator.tryTranslate(key, text));
        EXPECT_EQ(text, L"untouched");
    }
}

TEST_F(TranslatorTest, LaysALaterLanguageOverTheEarlier) {
    Translator translator;
    ASSERT_TRUE(translator.Load(L"de"));
    ASSERT_TRUE(translator.Load(L"fr"));
    EXPECT_EQ(translator.currentLanguage(), L"fr");
    EXPECT_EQ(translator.siteLanguage(), L"fr");
    EXPECT_EQ(translator.siteLanguage(L"zh-Hant"), L"tc");
    const ResourceData file = loadResource({L"PDX_LOCSTRINGS", L"FR"});
    const auto french = readStringFile({file.bytes, file.size});
    ASSERT_TRUE(french);
    for (const auto& [key, text] : *french) EXPECT_EQ(translator.translate(key), text);
}

TEST_F(TranslatorTest, KeepsItsLanguageWhenAnotherIsMissing) {
    Translator translator;
    ASSERT_TRUE(translator.Load(L"pt-BR"));
    for (const wchar_t* missing : {L"nl", L"pt-PT", L"", L"#1", L"\u4E2D"}) {
        EXPECT_FALSE(translator.Load(missing));
    }
    EXPECT_EQ(translator.currentLanguage(), L"pt-BR");
    EXPECT_EQ(translator.siteLanguage(), L"br");
    EXPECT_EQ(translator.translate(L"installer_yes"), L"SIM");
    const std::string failed = "2 Translator::Load Failed to load localization resources for ";
    EXPECT_THAT(log.takeTexts(),
                ElementsAre(failed + "nl", failed + "pt-PT", failed, failed + "#1", failed + "\xE4\xB8\xAD"));
}

}  // namespace
}  // namespace pdx
