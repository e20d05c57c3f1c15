// The parts of a URL.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pdx {

struct HttpUrl {
    std::wstring scheme;  ///< up to 64 characters
    std::wstring host;    ///< up to 256
    uint16_t port = 443;  ///< as the platform reports it; 443 if it reports none
    std::wstring path;    ///< up to 1024
    std::wstring extra;   ///< query and fragment, beginning with "?" or "#"; up to 1024
};

/// The parts of a URL in UTF-8; all texts empty for a malformed one. Logs nothing: the first request fails.
HttpUrl parseUrl(std::string_view url);

}  // namespace pdx
