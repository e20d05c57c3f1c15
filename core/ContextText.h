// How the arguments of callbacks are written into log lines and into the context.
#pragma once

#include <fmt/format.h>

#include <string>

#include "platform/Engine.h"
#include "platform/Text.h"

namespace pdx {

/// UTF-8 of an argument; a null one counts as empty.
inline std::string contextText(LPCWSTR text) { return toUtf8(textOrEmpty(text)); }

/// "{:08x}" of a status.
inline std::string contextStatus(HRESULT hr) { return fmt::format("{:08x}", static_cast<uint32_t>(hr)); }

/// The texts of an argument list, joined with ", "; null ones count as empty.
inline std::wstring joinTexts(DWORD count, const LPCWSTR* texts) {
    std::wstring joined;
    for (DWORD i = 0; texts && i < count; ++i) {
        if (i > 0) joined += L", ";
        joined += textOrEmpty(texts[i]);
    }
    return joined;
}

}  // namespace pdx
