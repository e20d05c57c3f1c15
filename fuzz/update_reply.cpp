#include <nlohmann/json.hpp>

#include "fuzz/Target.h"
#include "platform/rules/Utf8.h"
#include "state/rules/UpdateRules.h"

namespace pdx::fuzz {

void update_reply(std::string_view input) {
    const std::string version = recommendedVersionOf(input);
    require(isWellFormedUtf8(version) || version.find("\xEF\xBF\xBD") != std::string::npos, "a version is UTF-8");
    if (nlohmann::json::accept(input)) {
        const nlohmann::json again = {{"recommended", {{"version", version}}}};
        require(recommendedVersionOf(again.dump()) == version, "a version survives being sent again");
    } else {
        require(version.empty(), "what is no JSON recommends nothing");
    }
    const uint32_t bucket = updateBucketOf(input);
    require(bucket >= 1 && bucket <= bucketCount, "a bucket is one of a hundred");
}

}  // namespace pdx::fuzz
