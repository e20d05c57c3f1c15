// The language of the strings for a locale, and its code on the legal documents' site.
#pragma once

#include <string_view>

namespace pdx {

/// The language for a locale's name, such as "pt-BR" or "zh-Hans-HK": chosen by the whole name, else by the part before
/// the first "-". Otherwise "en". Case-sensitive, so "DE" gives "en". "zh" is traditional Chinese, and on purpose every
/// Chinese locale except "zh-CN" and "zh-SG" gives it.
std::wstring_view languageForLocale(std::wstring_view locale);

/// The short code that the legal documents' links use for a language; "en" for any other. Case-sensitive.
std::wstring_view siteCodeForLanguage(std::wstring_view language);

}  // namespace pdx
