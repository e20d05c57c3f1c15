// A property of a row that the system's management service gives.
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
    std::wstring text;   ///< UTF-16 units, of a text alone
    int32_t number = 0;  ///< of a number alone
};

}  // namespace pdx
