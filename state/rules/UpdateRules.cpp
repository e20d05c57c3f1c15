#include "state/rules/UpdateRules.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>
#include <random>

namespace pdx {
namespace {

/// The multiplication by 33 that texts are often hashed with.
uint32_t hashOf(std::string_view text) {
    uint32_t hash = 5381;
    for (const char c : text) hash = hash * 33 + static_cast<uint8_t>(c);
    return hash;
}

bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Reads one number as scanf's "%hu" does, blanks and a sign in front of it included, off the head of the text.
std::optional<uint16_t> takeNumber(std::string_view& text) {
    std::string_view rest = text;
    while (!rest.empty() && isSpace(rest.front())) rest.remove_prefix(1);
    const bool negative = rest.starts_with('-');
    if (negative || rest.starts_with('+')) rest.remove_prefix(1);
    if (rest.empty() || !isDigit(rest.front())) return std::nullopt;
    uint32_t number = 0;
    for (; !rest.empty() && isDigit(rest.front()); rest.remove_prefix(1))
        number = (number * 10 + static_cast<uint32_t>(rest.front() - '0')) & 0xFFFF;
    text = rest;
    return static_cast<uint16_t>(negative ? 0 - number : number);
}

}  // namespace

std::string addressText(std::span<const uint8_t> address) { return fmt::format("{:02x}", fmt::join(address, "-")); }

uint32_t updateBucketOf(std::string_view address) {
    std::mt19937 generator(hashOf(address));
    return chooseBucket([&] { return static_cast<uint32_t>(generator()); });
}

uint64_t parseVersion64(std::string_view text) {
    uint64_t version = 0;
    for (int shift = 48; shift >= 0; shift -= 16) {
        const auto number = takeNumber(text);
        if (!number) break;
        version |= uint64_t{*number} << shift;
        if (!text.starts_with('.')) break;
        text.remove_prefix(1);
    }
    return version;
}

std::string recommendedVersionOf(std::string_view reply) {
    try {
        return nlohmann::json::parse(reply).at("recommended").at("version").get<std::string>();
    } catch (...) {
        return {};
    }
}

bool isNewerVersion(std::string_view recommended, std::string_view current) {
    return parseVersion64(recommended) > parseVersion64(current);
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
