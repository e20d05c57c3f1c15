#include "state/rules/UpdateRules.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>
#include <random>

namespace pdx {
namespace {

/// The multiplicative hash with factor 33.
uint32_t hashOf(std::string_view text) {
    uint32_t hash = 5381;
    for (const char c : text) hash = hash * 33 + static_cast<uint8_t>(c);
    return hash;
}

}  // namespace

std::string addressText(std::span<const uint8_t> address) { return fmt::format("{:02x}", fmt::join(address, "-")); }

uint32_t updateBucketOf(std::string_view address) {
    std::mt19937 generator(hashOf(address));
    return chooseBucket([&] { return static_cast<uint32_t>(generator()); });
}

std::string recommendedVersionOf(std::string_view reply) {
    try {
        return nlohmann::json::parse(reply).at("recommended").at("version").get<std::string>();
    } catch (...) {
        return {};
    }
}

std::string updatePathOf(uint32_t bucket) {
    return fmt::format("/autopatch/upgrade/buckets/{bucket}", fmt::arg("bucket", bucket));
}

std::optional<std::string> fillVersion(const std::string& addressTemplate, std::string_view version) {
    if (addressTemplate.empty()) return std::nullopt;
    try {
        return fmt::format(fmt::runtime(addressTemplate), fmt::arg("version", version));
    } catch (const fmt::format_error&) {
        return std::nullopt;
    }
}

}  // namespace pdx
