#include "core/rules/PackageLog.h"

namespace pdx {

std::wstring packageLogVariable(std::wstring_view packageId, bool forward) {
    return std::wstring(forward ? L"WixBundleLog_" : L"WixBundleRollbackLog_").append(packageId);
}

std::optional<std::wstring> reportFileStem(std::wstring_view logPath) {
    if (logPath.size() < 5) return std::nullopt;
    return std::wstring(logPath.substr(0, logPath.rfind(L".log")));
}

}  // namespace pdx
