#include <map>

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
    // Of each letter that quoting leaves alone, those of the codes are gone and all others stay.
    std::map<wchar_t, int> left;
    for (const wchar_t letter : line) ++left[letter];
    for (const std::wstring& argument : splitArguments(line)) {
        const size_t at = argument.find(name);
        if (at == std::wstring::npos) continue;
        for (const wchar_t letter : argument.substr(at + name.size())) --left[letter];
    }
    for (const wchar_t letter : hidden) --left[letter];
    for (const auto& [letter, count] : left)
        if (std::wstring_view(L"# \t\"\\").find(letter) == std::wstring_view::npos)
            require(count == 0, "the codes that a program gets are hidden, and nothing else");
    hideAuthcode(line);
}

}  // namespace pdx::fuzz
