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

uint32_t parseDecimal(std::wstring_view text) {
    uint64_t number = 0;
    for (const wchar_t letter : text) {
        if (letter < L'0' || letter > L'9') return 0;
        number = number * 10 + static_cast<uint64_t>(letter - L'0');
        if (number > UINT32_MAX) return 0;
    }
    return static_cast<uint32_t>(number);
}

}  // namespace pdx
