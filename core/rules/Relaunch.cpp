#include "core/rules/Relaunch.h"

#include <algorithm>

#include "core/rules/VariableNames.h"

namespace pdx {
namespace {

/// A value after "NAME=", quoted so that CommandLineToArgvW returns it whole. Backslashes escape only before a quote,
/// and are doubled there.
std::wstring quoted(const std::wstring& value) {
    if (std::ranges::none_of(value, [](wchar_t c) { return c <= L' ' || c == L'"'; })) return value;
    std::wstring text = L"\"";
    size_t backslashes = 0;
    for (const wchar_t c : value) {
        if (c == L'"') text.append(backslashes + 1, L'\\');
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        text += c;
    }
    return text.append(backslashes, L'\\') + L'"';
}

}  // namespace

std::wstring relaunchParameters(const std::function<std::wstring(const wchar_t* variable)>& valueOf) {
    std::wstring parameters;
    for (const wchar_t* name :
         {variable::meridianMode, variable::authCode, variable::uninstallBastion, variable::meridianCohort,
          variable::meridianEnable, variable::repair, variable::harrier}) {
        if (!parameters.empty()) parameters += L' ';
        parameters += name + (L'=' + quoted(valueOf(name)));
    }
    return parameters;
}

std::wstring authArgument(const std::wstring& code) {
    return code.empty() ? std::wstring() : L"--authCode=" + quoted(code);
}

}  // namespace pdx
