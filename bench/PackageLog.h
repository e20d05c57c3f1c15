// A log like that of a long installation by Windows Installer, the same on every run.
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

/// Lines of all kinds that reach the library, 20 to some 2,000 characters long, mostly action data and progress. Some
/// are the commands of custom actions, which set variables and add to the context.
std::vector<PackageLogLine> makePackageLog(size_t lines);

}  // namespace pdx
