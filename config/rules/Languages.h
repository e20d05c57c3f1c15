// Which language the strings are shown in, and what the legal documents' site calls it.
#pragma once

#include <string_view>

namespace pdx {

/// The language for a locale's name, such as "pt-BR" or "zh-Hans-HK": by the whole name, else by the part before the
/// first "-", else "en". Case-sensitive, so "DE" gives "en". The bare "zh" is traditional Chinese, and every
/// Chinese locale but "zh-CN" and "zh-SG" falls to it on purpose.
std::wstring_view languageForLocale(std::wstring_view locale);

/// The short code that the legal documents' links use for a language; "en" for any other. Case-sensitive.
std::wstring_view siteCodeForLanguage(std::wstring_view language);

}  // namespace pdx
