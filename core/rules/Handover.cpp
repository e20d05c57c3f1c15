#include "core/rules/Handover.h"

namespace pdx {

std::wstring relaunchParameters(const std::function<std::wstring(const wchar_t* variable)>& valueOf) {
    std::wstring parameters;
    for (const wchar_t* variable : {L"PDX_MERIDIAN_MODE", L"KESTREL_AUTHCODE", L"PDX_UNINSTALL_BASTION",
                                    L"PDX_MERIDIAN_COHORT", L"PDX_MERIDIAN_ENABLE", L"PDX_REPAIR", L"HARRIER_ENABLE"}) {
        if (!parameters.empty()) parameters += L' ';
        parameters += variable + (L'=' + valueOf(variable));
    }
    return parameters;
}

std::wstring authArgument(std::wstring_view code) {
    return code.empty() ? std::wstring() : L"--authCode=" + std::wstring(code);
}

}  // namespace pdx
