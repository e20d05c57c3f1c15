// A property in a row of a WMI query.
#pragma once

#include <cstdint>
#include <string>

namespace pdx {

struct WmiValue {
    enum class Kind {
        null,
        text,
        number,
        other,  ///< any other type, or a property that the row does not have
    };
    Kind kind = Kind::other;
    std::wstring text;   ///< UTF-16 units; for a text only
    int32_t number = 0;  ///< for a number only
};

}  // namespace pdx
