#include "core/rules/Relaunch.h"

#include "core/rules/VariableNames.h"

namespace pdx {

std::wstring relaunchParameters(const std::function<std::wstring(const wchar_t* variable)>& valueOf) {
    std::wstring parameters;
    for (const wchar_t* name :
         {variable::meridianMode, variable::authCode, variable::uninstallBastion, variable::meridianCohort,
          variable::meridianEnable, variable::repair, variable::harrier}) {
        if (!parameters.empty()) parameters += L' ';
        parameters += name + (L'=' + valueOf(name));
    }
    return parameters;
}

std::wstring authArgument(std::wstring_view code) {
    return code.empty() ? std::wstring() : L"--authCode=" + std::wstring(code);
}

}  // namespace pdx
