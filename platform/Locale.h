// The user's language and country.
#pragma once

#include <string>

namespace pdx {

/// The name of the user's locale, "en-US"; empty if the system gives none.
std::wstring userLocale();
/// The two letters of the user's country, "US"; empty if the system gives none.
std::wstring userCountry();

}  // namespace pdx
