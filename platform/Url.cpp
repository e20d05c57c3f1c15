#include "platform/Url.h"

#include <windows.h>

#include <wininet.h>

#include "platform/Text.h"

namespace pdx {
namespace {

constexpr DWORD schemeSize = 64;
constexpr DWORD hostSize = 256;
constexpr DWORD pathSize = 1024;
constexpr DWORD extraSize = 1024;

}  // namespace

HttpUrl parseUrl(std::string_view url) {
    wchar_t scheme[schemeSize + 1] = {};
    wchar_t host[hostSize + 1] = {};
    wchar_t path[pathSize + 1] = {};
    wchar_t extra[extraSize + 1] = {};
    URL_COMPONENTSW parts = {};
    parts.dwStructSize = sizeof parts;
    parts.lpszScheme = scheme;
    parts.dwSchemeLength = schemeSize + 1;
    parts.lpszHostName = host;
    parts.dwHostNameLength = hostSize + 1;
    parts.lpszUrlPath = path;
    parts.dwUrlPathLength = pathSize + 1;
    parts.lpszExtraInfo = extra;
    parts.dwExtraInfoLength = extraSize + 1;
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
