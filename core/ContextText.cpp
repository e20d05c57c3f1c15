#include "core/ContextText.h"

#include <fmt/format.h>

#include <cstdint>

namespace pdx {

std::string contextText(LPCWSTR text) { return toUtf8(textOrEmpty(text)); }

std::string contextStatus(HRESULT hr) { return fmt::format("{:08x}", static_cast<uint32_t>(hr)); }

std::wstring joinTexts(DWORD count, const LPCWSTR* texts) {
    std::wstring joined;
    for (DWORD i = 0; texts && i < count; ++i) {
        if (i > 0) joined += L", ";
        joined += textOrEmpty(texts[i]);
    }
    return joined;
}

}  // namespace pdx
