#include "platform/Url.h"

#include <windows.h>

#include <wininet.h>

#include "platform/Text.h"

namespace pdx {

HttpUrl parseUrl(std::string_view url) {
    wchar_t scheme[64 + 1] = {};
    wchar_t host[256 + 1] = {};
    wchar_t path[1024 + 1] = {};
    wchar_t extra[1024 + 1] = {};
    URL_COMPONENTSW parts = {};
    parts.dwStructSize = sizeof parts;
    parts.lpszScheme = scheme;
    parts.dwSchemeLength = ARRAYSIZE(scheme);
    parts.lpszHostName = host;
    parts.dwHostNameLength = ARRAYSIZE(host);
    parts.lpszUrlPath = path;
    parts.dwUrlPathLength = ARRAYSIZE(path);
    parts.lpszExtraInfo = extra;
    parts.dwExtraInfoLength = ARRAYSIZE(extra);
    const std::wstring wide = toWide(url);
    HttpUrl result;
    if (!InternetCrackUrlW(wide.c_str(), static_cast<DWORD>(wide.size()), 0, &parts)) return result;
    result.scheme = scheme;
    result.host = host;
    if (parts.nPort != 0) result.port = parts.nPort;
    result.path = path;
    result.extra = extra;
    return result;
}

}  // namespace pdx
