// A text over and over, for tests of bounds.
#pragma once

#include <string>
#include <string_view>

namespace pdx {

inline std::string repeated(std::string_view part, size_t count) {
    std::string text;
    for (; count > 0; --count) text += part;
    return text;
}

}  // namespace pdx
