#include "fuzz/Target.h"
#include "platform/rules/Numbers.h"
#include "platform/rules/Utf8.h"
#include "state/rules/FinalPath.h"

namespace pdx::fuzz {

void final_path(std::string_view input) {
    Input fields(input);
    const std::wstring prefix = toWide(fields.field()), path = toWide(fields.field());
    // A system without a link: what lies at a path is at that path.
    const PathSystem system = {[](const std::wstring& at) { return std::wstring(finalPathStart) + at; },
                               [](const std::wstring& at, const std::wstring& name) {
                                   return at.empty() || name.empty() || at.back() == L'\\' ? at + name
                                                                                           : at + L'\\' + name;
                               }};
    const ExpectedPath expected = expectedFinalPath(prefix, path, system);
    require(expected.path.empty() || expected.problem == ExpectedPathProblem::none, "a problem gives no path");
    if (!prefix.empty() && expected.problem == ExpectedPathProblem::none)
        require(expected.path.starts_with(prefix) && prefix.starts_with(finalPathStart),
                "a path is in the trusted folder");
    withoutFinalPathStart(path);
    const std::wstring temporary = withoutSessionFolder(path, input.empty() ? 0 : static_cast<uint8_t>(input[0]));
    require(path.starts_with(temporary), "a session folder is cut from the end");
}

}  // namespace pdx::fuzz
