#include "core/rules/PackageLog.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

namespace pdx {

std::wstring packageLogVariable(std::wstring_view packageId, bool forward) {
    return fmt::format(L"WixBundle{}Log_{}", forward ? L"" : L"Rollback", packageId);
}

std::optional<std::wstring> reportFileStem(std::wstring_view logPath) {
    if (logPath.size() < 5) return std::nullopt;
    return std::wstring(logPath.substr(0, logPath.rfind(L".log")));
}

}  // namespace pdx
