// The rules of the update check: whether it is due, the machine's bucket, and the reply.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/rules/EngineTypes.h"

namespace pdx {

/// The facts of a run that decide whether it asks for an update.
struct UpdateCheckFacts {
    int32_t action = BOOTSTRAPPER_ACTION_INSTALL;
    int32_t relation = BOOTSTRAPPER_RELATION_NONE;
    bool thinInstaller = true;
    bool skip = false;  ///< the configuration forbids it
};

/// Whether the run asks. One that was started as an update never does, so that updates do not chain.
constexpr bool isUpdateCheckDue(const UpdateCheckFacts& facts) {
    return facts.action == BOOTSTRAPPER_ACTION_INSTALL && facts.relation != BOOTSTRAPPER_RELATION_UPDATE &&
           facts.thinInstaller && !facts.skip;
}

/// A hardware address as "00-11-22-33-44-55"; the bucket depends on this form.
std::string addressText(std::span<const uint8_t> address);

inline constexpr uint32_t bucketCount = 100;

/// A bucket, from 1 on, chosen evenly; draw() returns numbers of 32 bits.
template <typename Draw>
uint32_t chooseBucket(Draw&& draw) {
    // Rejects the remainder to avoid modulo bias.
    constexpr uint32_t share = UINT32_MAX / bucketCount;
    uint32_t number = draw();
    while (number / bucketCount >= share) number = draw();
    return number % bucketCount + 1;
}

/// The bucket of an address, from 1 to 100, the same in every version; also for the empty address.
uint32_t updateBucketOf(std::string_view address);

/// The version that the service's reply recommends; empty for any other reply. Uses no more stack for a deeply nested
/// reply than for a flat one.
std::string recommendedVersionOf(std::string_view reply);

/// The path of the request for a bucket.
std::string updatePathOf(uint32_t bucket);

/// The address of a version's installer: the template with "{version}" replaced, if it contains that. Nothing for an
/// empty or malformed template.
std::optional<std::string> fillVersion(const std::string& addressTemplate, std::string_view version);

}  // namespace pdx
