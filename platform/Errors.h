// The system's texts for errors.
#pragma once

#include <windows.h>

#include <string>

namespace pdx {

/// The system's message for a result code in UTF-8, without white space at its end, in the system's language. The code
/// as eight hexadecimal digits ("a7ff047e") if the system has no message.
std::string describeError(HRESULT result);

}  // namespace pdx
