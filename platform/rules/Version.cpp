#include "platform/rules/Version.h"

#include <fmt/format.h>

#include <optional>

namespace pdx {
namespace {

bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Removes one number from the head of the text and returns it, as scanf's "%hu" reads it, with blanks and a sign.
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

std::string versionText(uint64_t version) {
    return fmt::format("{}.{}.{}.{}", version >> 48, (version >> 32) & 0xFFFF, (version >> 16) & 0xFFFF,
                       version & 0xFFFF);
}

bool isNewerVersion(std::string_view version, std::string_view current) {
    return parseVersion64(version) > parseVersion64(current);
}

}  // namespace pdx
