#include "platform/rules/Format.h"

#include <array>

#include "fuzz/Target.h"

namespace pdx::fuzz {

void format(std::string_view input) {
    Input fields(input);
    const std::string_view format = fields.field(), text = fields.field();
    const FormatArgument arguments[] = {text, int64_t{-1}, 0.5, uint32_t{7}};
    std::array<char, 200> buffer;
    std::array<char, 20> shorter;
    const size_t size = formatPrintf(buffer, format, arguments), cut = formatPrintf(shorter, format, arguments);
    require(size < buffer.size() && buffer[size] == 0, "a text ends in a zero within its buffer");
    require(cut < shorter.size() && std::equal(shorter.begin(), shorter.begin() + cut, buffer.begin()),
            "a shorter buffer cuts the same text");
}

}  // namespace pdx::fuzz
