#include "reporting/rules/LogLines.h"

namespace pdx {

size_t LineCutter::lineEnd(std::string_view block) const {
    for (size_t at = 0;;) {
        const size_t feed = block.find('\n', at);
        if (feed == std::string_view::npos) return feed;
        if (unit == 1) return feed + 1;
        // The low byte stands first: only one at an even place can be a line feed, with a zero behind it.
        if (feed % 2 == 0 && feed + 1 < block.size() && block[feed + 1] == '\0') return feed + 2;
        at = feed + 1;
    }
}

}  // namespace pdx
