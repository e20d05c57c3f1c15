#include "platform/Locale.h"

#include <windows.h>

namespace pdx {

std::wstring userLocale() {
    wchar_t name[LOCALE_NAME_MAX_LENGTH];
    return GetUserDefaultLocaleName(name, LOCALE_NAME_MAX_LENGTH) != 0 ? name : L"";
}

std::wstring userCountry() {
    wchar_t letters[64];
    const GEOID place = GetUserGeoID(GEOCLASS_NATION);
    return GetGeoInfoW(place, GEO_ISO2, letters, static_cast<int>(std::size(letters)), 0) != 0 ? letters : L"";
}

}  // namespace pdx
