#include "config/rules/TomlConfig.h"

#include <cpptoml.h>

#include <sstream>

#include "fuzz/Target.h"

namespace pdx::fuzz {

namespace {

struct Parsed {
    explicit Parsed(const std::string& text) {
        std::istringstream stream(text);
        map = parseConfig(stream, [this](const char* function, const char* message) {
            require(*message != 0, "a report has a text");
            ++(std::string_view(function) == "LoadConfigStream" ? failures : skipped);
        });
        require(failures == 0 || (failures == 1 && map.size() == 0), "a bad text gives nothing and one report");
    }

    ConfigMap map;
    int failures = 0, skipped = 0;
};

bool isTooDeep(const std::string& text) {
    return std::ranges::count_if(text, [](char c) { return c == '[' || c == '{' || c == '.'; }) > 500;
}

bool isToml(const std::string& text) try {
    std::istringstream stream(text);
    cpptoml::parser(stream).parse();
    return true;
} catch (const std::exception&) {
    return false;
}

/// As a string of TOML, in ASCII characters that are no brackets, braces or dots.
std::string quoted(std::string_view value) {
    std::string text = "\"";
    for (const char c : value) {
        const auto byte = static_cast<unsigned char>(c);
        constexpr char digits[] = "0123456789ABCDEF";
        if (byte >= 0x80)
            text += c;
        else
            text.append("\\u00").append(1, digits[byte / 16]).append(1, digits[byte % 16]);
    }
    return text + '"';
}

}  // namespace

void toml(std::string_view input) {
    const std::string text(input);
    const Parsed alone(text);
    require((alone.failures == 0) == (!isTooDeep(text) && isToml(text)),
            "a text is read if it is TOML and not too deep");

    // No setting of the text has a key as long as this one. The blank keeps a return at the text's end, which is an
    // error, from becoming a line's end.
    const std::string key(input.size() + 1, 'k');
    const std::string longer = text + " \n[" + key + "]\nskipped = [1]\nnested.value = " + quoted(input) + '\n';
    const Parsed both(longer);
    require((both.failures == 0) == (alone.failures == 0 && !isTooDeep(longer)), "a further table changes no other");
    if (both.failures != 0) return;
    require(both.map.size() == alone.map.size() + 1 && both.skipped == alone.skipped + 1,
            "a text is one more setting, and an array is reported");
    require(both.map.getString(key + ".NESTED.VALUE") == input, "a text arrives as it was");
}

}  // namespace pdx::fuzz
