#include "telemetry/Locale.h"

#include <windows.h>

#include <nlohmann/json.hpp>

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

uint64_t currentFileTime() {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime;
}

std::string readableLine(const nlohmann::json& value) {
    return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace pdx
