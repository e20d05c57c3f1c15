#include "core/rules/ErrorGroups.h"

#include <unordered_map>

namespace pdx {

ErrorGroup errorGroup(std::string_view code) {
    static const std::unordered_map<std::string_view, ErrorGroup> groups = {
        {"80070005", {"system", true}},   // access denied
        {"80070070", {"dnlv", false}},    // disk full
        {"a001051b", {"dnlv", false}},    // Windows Installer 1307: no space for a file
        {"a0010641", {"dnlv", false}},    // Windows Installer 1601: no space on a drive
        {"80070642", {"dnlv", false}},    // user exit
        {"a0000642", {"dnlv", false}},    // user exit: refused elevation
        {"80070643", {"unknown", true}},  // generic failure
        {"8007064c", {"system", true}},   // 1612, the source of a package is missing
        {"80070652", {"system", false}},  // another installation is running
        {"80070780", {"system", true}},   // 1920, the file cannot be accessed
        {"80070783", {"system", true}},   // 1923, in Windows Installer a service that could not be installed
        {"80072ee2", {"network", true}},  // time-out
        {"80072efd", {"network", true}},  // cannot connect
        {"80072eff", {"network", true}},  // connection reset
        {"80072f0d", {"network", true}},  // invalid certificate authority
        {"80072f78", {"network", true}},  // invalid server response
        {"80072f7d", {"network", true}},  // security channel error
    };
    const auto found = groups.find(code);
    return found == groups.end() ? ErrorGroup{"unknown", true} : found->second;
}

}  // namespace pdx
