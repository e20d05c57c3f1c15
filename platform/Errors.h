// The system's texts for errors.
#pragma once

#include <windows.h>

#include <string>

namespace pdx {

/// The system's message for a result code in UTF-8, in the language the system chooses, without white space at its end;
/// the code as eight hexadecimal digits ("a7ff047e") if the system has no text for it.
std::string describeError(HRESULT result);

}  // namespace pdx
