// The command line of this process.
#pragma once

#include <string>
#include <vector>

namespace pdx {

/// The arguments behind the program, as the system splits them.
std::vector<std::wstring> processArguments();

}  // namespace pdx
