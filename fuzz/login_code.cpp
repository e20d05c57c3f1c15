#include <vector>

#include "fuzz/Arguments.h"
#include "fuzz/Target.h"
#include "platform/rules/CommandLine.h"
#include "platform/rules/Utf8.h"

namespace pdx::fuzz {

namespace {

constexpr std::wstring_view name = L"KESTREL_AUTHCODE=";

}  // namespace

void login_code(std::string_view input) {
    const std::wstring line = toWide(input);
    const std::wstring hidden = hideAuthcodeOfArguments(line);
    const auto before = splitArguments(line), after = splitArguments(hidden);
    require(before.size() == after.size(), "hiding leaves the number of arguments");
    for (size_t at = 0; at < before.size(); ++at) {
        const size_t code = before[at].find(name);
        if (code == std::wstring::npos || code + name.size() == before[at].size()) continue;
        require(after[at] == before[at].substr(0, code + name.size()) + L"####",
                "no code that a program gets is shown");
    }
    require(hideAuthcodeOfArguments(hidden) == hidden, "hiding twice is hiding once");
    hideAuthcode(line);
}

}  // namespace pdx::fuzz
