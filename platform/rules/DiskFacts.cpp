#include "platform/rules/DiskFacts.h"

namespace pdx {

std::optional<std::string> diskNumberOf(std::string_view partition) {
    constexpr std::string_view mark = "Disk #";
    const size_t found = partition.find(mark);
    const size_t end = partition.find(',');
    if (found == std::string_view::npos || end == std::string_view::npos) return std::nullopt;
    const size_t start = found + mark.size();
    if (end < start) return std::nullopt;
    return std::string(partition.substr(start, end - start));
}

}  // namespace pdx
