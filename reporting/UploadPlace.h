// Where the service of error reports wants a report put.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pdx {

struct UploadPlace {
    std::string trackingId;
    std::string signedUrl;
};

/// The service's answer (XML); nothing unless it is well-formed and names both. COM must be initialised on the calling
/// thread.
std::optional<UploadPlace> readUploadPlace(std::string_view response);

}  // namespace pdx
