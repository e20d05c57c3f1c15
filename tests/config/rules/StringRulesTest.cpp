// Which language the strings are in, and what is filled into them.
#include <gtest/gtest.h>

#include "config/rules/Languages.h"
#include "config/rules/SupportAddress.h"

namespace pdx {
namespace {

using LanguageCase = std::pair<std::wstring_view, std::wstring_view>;

TEST(LanguageForLocale, TakesTheWholeNameThenItsFirstPart) {
    const LanguageCase cases[] = {
        {L"de", L"de"},           {L"de-AT", L"de"},           {L"en-GB", L"en"},      {L"es", L"es"},
        {L"es-ES_tradnl", L"es"}, {L"es-419", L"es"},          {L"es-MX", L"es-MX"},   {L"es-US", L"es-MX"},
        {L"fr-CA", L"fr"},        {L"it-CH", L"it"},           {L"ja-JP", L"ja"},      {L"ko-KR", L"ko"},
        {L"pl-PL", L"pl"},        {L"pt-BR", L"pt-BR"},        {L"ru-RU", L"ru"},      {L"th-TH", L"th"},
        {L"zh", L"zh-Hant"},      {L"zh-CN", L"zh-Hans"},      {L"zh-SG", L"zh-Hans"}, {L"zh-TW", L"zh-Hant"},
        {L"zh-HK", L"zh-Hant"},   {L"zh-Hans-HK", L"zh-Hant"},
    };
    for (const auto& [locale, language] : cases) EXPECT_EQ(languageForLocale(locale), language);
}

TEST(LanguageForLocale, FallsBackToEnglish) {
    for (const std::wstring_view locale : {L"nl-NL", L"pt-PT", L"pt", L"DE", L"De-at", L"es_MX", L"deu", L"-de", L""})
        EXPECT_EQ(languageForLocale(locale), L"en");
}

TEST(SiteCodeForLanguage, ReturnsTheCodeOfEachLanguage) {
    const LanguageCase cases[] = {
        {L"de", L"de"}, {L"es-MX", L"mx"}, {L"pt-BR", L"br"}, {L"zh-Hant", L"tc"}, {L"zh-Hans", L"sc"},
        {L"", L"en"},   {L"nl", L"en"},    {L"pt", L"en"},    {L"ZH-HANS", L"en"},
    };
    for (const auto& [language, code] : cases) EXPECT_EQ(siteCodeForLanguage(language), code);
}

TEST(SupportAddress, ReplacesItsPlaceholder) {
    const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*> cases[] = {
        {L"<a href=\"{support}/en\">x</a>", L"https://s.example", L"<a href=\"https://s.example/en\">x</a>"},
        {L"{support}/en", L"https://s.example/", L"https://s.example/en"},
        {L"{support}{support}", L"a", L"aa"},
        {L"{support}/en", L"{support}", L"{support}/en"},
        {L"{support}/en", L"", L"/en"},
        {L"{supported} {suppor", L"a", L"{supported} {suppor"},
    };
    for (const auto& [text, address, result] : cases) EXPECT_EQ(fillSupportAddress(text, address), result);
}

}  // namespace
}  // namespace pdx
