#include "config/Translator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "config/Resources.h"
#include "tests/platform/CapturedLog.h"

namespace pdx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TranslatorTest : public testing::Test {
  protected:
    CapturedLog log;
};

TEST_F(TranslatorTest, BeginsInTheUsersLanguage) {
    const Translator translator;
    EXPECT_EQ(translator.currentLanguage(), detectLanguage());
    EXPECT_NE(translator.translate(L"installer_cancel"), L"installer_cancel");
    EXPECT_THAT(log.takeTexts(), IsEmpty());
}

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
