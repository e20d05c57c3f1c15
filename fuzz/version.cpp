#include "platform/rules/Version.h"
#include "fuzz/Target.h"

namespace pdx::fuzz {

void version(std::string_view input) {
    Input fields(input);
    const std::string_view first = fields.field(), second = fields.field();
    const uint64_t version = parseVersion64(first);
    require(parseVersion64(versionText(version)) == version, "a version is read as it was written");
    require(!isNewerVersion(first, versionText(version)), "no version is newer than itself");
    require(!isNewerVersion(first, second) || !isNewerVersion(second, first), "of two versions one is newer");
}

}  // namespace pdx::fuzz
