// How the arguments of callbacks are written into log lines and into the context.
#pragma once

#include <string>

#include "platform/Engine.h"
#include "platform/Text.h"

namespace pdx {

/// UTF-8 of an argument; a null one counts as empty.
std::string contextText(LPCWSTR text);

/// "{:08x}" of a status.
std::string contextStatus(HRESULT hr);

/// The texts of an argument list, joined with ", "; null ones count as empty.
std::wstring joinTexts(DWORD count, const LPCWSTR* texts);

}  // namespace pdx
