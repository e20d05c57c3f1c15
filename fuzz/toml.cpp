#include "config/rules/TomlConfig.h"

#include <sstream>

#include "fuzz/Target.h"

namespace pdx::fuzz {

void toml(std::string_view input) {
    std::istringstream stream{std::string(input)};
    bool reported = false;
    const ConfigMap map = parseConfig(stream, [&](const char*, const char* text) {
        reported = true;
        require(text != nullptr && *text != 0, "a report has a text");
    });
    require(map.size() <= input.size(), "each setting takes a byte at least");
    ConfigMap merged;
    merged.merge(map);
    merged.merge(map);
    require(merged.size() == map.size(), "a map merged twice has no more settings");
    require(reported || !input.ends_with("= \"unclosed"), "a syntax error is reported");
}

}  // namespace pdx::fuzz
