// A log such as Windows Installer's messages of a long installation make, the same on every run.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace pdx {

struct PackageLogLine {
    int32_t type;  ///< INSTALLMESSAGE_* with style bits, as the engine passes it
    std::wstring text;
    std::vector<std::wstring> data;
};

/// Lines of all kinds that reach the library, 20 to some 2,000 characters long, most of them action data and progress;
/// among them the library's own commands by which custom actions set variables and add to the context.
std::vector<PackageLogLine> makePackageLog(size_t lines);

}  // namespace pdx
