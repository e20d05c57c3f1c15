// The upload address that the error report service names.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pdx {

struct UploadPlace {
    std::string trackingId;
    std::string signedUrl;
};

/// Reads the service's answer (XML); nothing unless it is well-formed and has both values. COM must be initialised on
/// the calling thread.
std::optional<UploadPlace> readUploadPlace(std::string_view response);

}  // namespace pdx
