// Strings: their files, and the translator over them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "config/StringFile.h"
#include "config/Translator.h"
#include "tests/platform/CapturedLog.h"

namespace pdx {
namespace {

TEST(StringFile, ReadsOnlyTheChildrenOfItsElement) {
    const std::pair<const char*, StringTable> rows[] = {
        {"<other/>", {}},
        {R"(<locStrings><locString Key="Same">first</locString><locString Key="SAME">last</locString></locStrings>)",
         {{L"same", L"last"}}},
        // Entities and markup are text; letters of three bytes; a line feed stays.
        {"<locStrings><locString Key=\"q&amp;\xC3\x84\">&lt;a&gt;one\n\ntwo\xE2\x80\xA6</locString></locStrings>",
         {{L"q&\u00C4", L"<a>one\n\ntwo\u2026"}}},
        {R"(<locStrings><locString Key="k"/><locString Key="">t</locString></locStrings>)", {{L"k", {}}, {{}, L"t"}}},
        // Only direct children of locStrings count, wherever that is; names and the attribute mind their case.
        {R"(<r><locString Key="no">t</locString><locStrings><x><locString Key="no">t</locString></x>)"
         R"(<locString Key="yes">t</locString><locString key="no">t</locString><LocString Key="no">t</LocString>)"
         R"(<locString>t</locString></locStrings></r>)",
         {{L"yes", L"t"}}},
    };
    for (const auto& [xml, strings] : rows) EXPECT_EQ(readStringFile(xml), strings) << xml;
}

TEST(StringFile, ReturnsNothingForBadXmlOrWithoutCom) {
    for (const std::string_view xml : {std::string_view(), std::string_view("<locStrings>\0</locStrings>", 26)})
        EXPECT_FALSE(readStringFile(xml)) << xml;
    std::thread([] { EXPECT_FALSE(readStringFile("<locStrings/>")); }).join();
}

TEST(Translator, FindsAKeyInAnyCase) {
    Translator translator;
    ASSERT_TRUE(translator.Load(L"en"));
    for (const wchar_t* key : {L"INSTALLER_ERROR_UNKNOWN_TITLE", L"installer_error_unknown_title"})
        EXPECT_EQ(translator.translate(key), L"Something went wrong\u2026");
}

TEST(Translator, ReturnsAnUnknownKeyUnchanged) {
    const Translator translator;
    EXPECT_EQ(translator.translate(L"No_Such_KEY"), L"No_Such_KEY");
    // The bundle has variables for these two names; they keep what the bundle's author wrote.
    std::wstring text = L"untouched";
    EXPECT_FALSE(translator.tryTranslate(L"INSTALLER_ERROR_REPORTER_SHORTCUT_TITLE", text) ||
                 translator.tryTranslate(L"INSTALLER_RECOVERY_HELPER_SHORTCUT_TITLE", text));
    EXPECT_EQ(text, L"untouched");
}

TEST(Translator, ALaterLanguageReplacesTheEarlier) {
    Translator translator;
    ASSERT_TRUE(translator.Load(L"de"));
    ASSERT_TRUE(translator.Load(L"fr"));
    EXPECT_EQ(translator.siteLanguage(), L"fr");
    EXPECT_EQ(translator.siteLanguage(L"zh-Hant"), L"tc");
    EXPECT_EQ(translator.translate(L"installer_yes"), L"OUI");
}

TEST(Translator, KeepsItsLanguageWhenAnotherIsMissing) {
    const CapturedLog log;
    Translator translator;
    ASSERT_TRUE(translator.Load(L"pt-BR"));
    for (const wchar_t* missing : {L"nl", L"", L"#1"}) EXPECT_FALSE(translator.Load(missing));
    EXPECT_EQ(translator.siteLanguage(), L"br");
    EXPECT_EQ(translator.translate(L"installer_yes"), L"SIM");
    const std::string failed = "2 Translator::Load Failed to load localization resources for ";
    EXPECT_THAT(log.takeTexts(), testing::ElementsAre(failed + "nl", failed, failed + "#1"));
}

}  // namespace
}  // namespace pdx
