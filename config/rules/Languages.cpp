#include "config/rules/Languages.h"

#include <span>

namespace pdx {
namespace {

struct Row {
    std::wstring_view name;
    std::wstring_view result;
};

constexpr Row localeLanguages[] = {
    {L"de", L"de"},       {L"en", L"en"},      {L"es", L"es"},         {L"es-MX", L"es-MX"},
    {L"es-US", L"es-MX"}, {L"fr", L"fr"},      {L"it", L"it"},         {L"ja", L"ja"},
    {L"ko", L"ko"},       {L"pl", L"pl"},      {L"pt-BR", L"pt-BR"},   {L"ru", L"ru"},
    {L"th", L"th"},       {L"zh", L"zh-Hant"}, {L"zh-CN", L"zh-Hans"}, {L"zh-SG", L"zh-Hans"},
};

constexpr Row siteCodes[] = {
    {L"de", L"de"}, {L"en", L"en"}, {L"es", L"es"},      {L"es-MX", L"mx"},   {L"fr", L"fr"},
    {L"it", L"it"}, {L"ja", L"ja"}, {L"ko", L"ko"},      {L"pl", L"pl"},      {L"pt-BR", L"br"},
    {L"ru", L"ru"}, {L"th", L"th"}, {L"zh-Hant", L"tc"}, {L"zh-Hans", L"sc"},
};

constexpr std::wstring_view english = L"en";

/// Empty if the table has no such name.
std::wstring_view find(std::span<const Row> table, std::wstring_view name) {
    for (const Row& row : table) {
        if (row.name == name) return row.result;
    }
    return {};
}

}  // namespace

std::wstring_view languageForLocale(std::wstring_view locale) {
    const std::wstring_view whole = find(localeLanguages, locale);
    if (!whole.empty()) return whole;
    const std::wstring_view first = find(localeLanguages, locale.substr(0, locale.find(L'-')));
    return first.empty() ? english : first;
}

std::wstring_view siteCodeForLanguage(std::wstring_view language) {
    const std::wstring_view code = find(siteCodes, language);
    return code.empty() ? english : code;
}

}  // namespace pdx
