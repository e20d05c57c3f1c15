#include "platform/rules/LinkWalk.h"

#include "fuzz/Target.h"
#include "platform/rules/Utf8.h"

namespace pdx::fuzz {

void link_walk(std::string_view input) {
    // The first line is the path; of the others each is where one more link leads.
    linkTargetOf(std::as_bytes(std::span(input)));
    Input fields(input);
    const std::wstring path = toWide(fields.field());
    size_t asked = 0;
    const WalkedPath walked = walkLinks(path, [&](const std::wstring& at) {
        ++asked;
        require(at.starts_with(L"\\\\?\\"), "a path is asked for by its exact name");
        PathEntry entry;
        const std::string_view line = fields.field();
        entry.isLink = !line.empty();
        entry.isMappedDrive = line.starts_with('y') || line.starts_with('r');
        if (!entry.isLink) return entry;
        entry.target = {toWide(line.substr(1)), line.starts_with('r')};
        return entry;
    });
    if (walked.result == WalkResult::arrived)
        require(walked.path.starts_with(L"\\\\?\\"), "a walk ends at an exact name");
    require(asked <= (input.size() + 1) * 2 * (mostLinks + 1), "a walk ends");
}

}  // namespace pdx::fuzz
