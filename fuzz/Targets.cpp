#include <cstdio>
#include <cstdlib>

#include "fuzz/Target.h"

namespace pdx::fuzz {

#define PDX_TARGETS(row)                                                                                       \
    row(markup) row(toml) row(msi_channel) row(login_code) row(update_reply) row(report) row(url) row(version) \
        row(log_lines) row(final_path) row(link_walk) row(delete_decision) row(command_line) row(format) row(utf8)

#define PDX_DECLARE(name) void name(std::string_view input);
#define PDX_ROW(name) {#name, name},
PDX_TARGETS(PDX_DECLARE)

std::span<const Target> targets() {
    static constexpr Target rows[] = {PDX_TARGETS(PDX_ROW)};
    return rows;
}

void require(bool holds, const char* property) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", property);
    std::abort();
}

}  // namespace pdx::fuzz
