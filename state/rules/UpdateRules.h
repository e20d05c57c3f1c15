// How a machine's share of a roll-out and the need of an update are decided.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/rules/EngineTypes.h"

namespace pdx {

/// The facts of a run by which it asks for an update or does not.
struct UpdateCheckFacts {
    int32_t action = BOOTSTRAPPER_ACTION_INSTALL;
    int32_t relation = BOOTSTRAPPER_RELATION_NONE;
    bool thinInstaller = true;
    bool skip = false;  ///< the configuration forbids it
};

/// Whether the run asks. One that was started as an update never does, which ends the chain of updates.
constexpr bool isUpdateCheckDue(const UpdateCheckFacts& facts) {
    return facts.action == BOOTSTRAPPER_ACTION_INSTALL && facts.relation != BOOTSTRAPPER_RELATION_UPDATE &&
           facts.thinInstaller && !facts.skip;
}

/// A hardware address as "00-11-22-33-44-55"; the bucket depends on this form.
std::string addressText(std::span<const uint8_t> address);

inline constexpr uint32_t bucketCount = 100;

/// The bucket, from 1 on, of the first number that chooses among all buckets evenly; draw gives numbers of 32 bits.
template <typename Draw>
uint32_t chooseBucket(Draw&& draw) {
    // Rejects the remainder to avoid modulo bias.
    constexpr uint32_t share = UINT32_MAX / bucketCount;
    uint32_t number = draw();
    while (number / bucketCount >= share) number = draw();
    return number % bucketCount + 1;
}

/// The bucket of an address, from 1 to 100: the same for ever, in every version. The empty address has one too.
uint32_t updateBucketOf(std::string_view address);

/// The bytes that a reply may have. An honest one has a hundred, and parsing takes many times its size in memory.
inline constexpr size_t longestUpdateReply = 64 * 1024;

/// The version that the service's reply recommends; empty if the reply is anything else. Takes as little of the stack
/// for a deeply nested reply as for a flat one.
std::string recommendedVersionOf(std::string_view reply);

/// The path under which the service answers for a bucket.
std::string updatePathOf(uint32_t bucket);

/// The address of a version's installer: the template with "{version}" filled in, or unchanged if it has none.
/// Nothing for a template that is empty or that cannot be filled.
std::optional<std::string> fillVersion(const std::string& addressTemplate, std::string_view version);

}  // namespace pdx
