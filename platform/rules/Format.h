// The printf format of log messages with typed arguments. A format with more directives than arguments, such as the
// text of an exception, reads no memory beyond them.
#pragma once

#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace pdx {

/// One argument: text (UTF-8), an integer or a floating number. Text is borrowed.
class FormatArgument {
  public:
    template <std::integral Number>
    FormatArgument(Number number) : value(static_cast<int64_t>(number)), narrow(sizeof(Number) <= sizeof(int32_t)) {}
    FormatArgument(double number) : value(number) {}
    FormatArgument(std::string_view text) : value(text) {}
    FormatArgument(const std::string& text) : value(std::string_view(text)) {}

    /// The bits of an integer; the directive decides about its sign.
    std::variant<int64_t, double, std::string_view> value;
    /// An integer of 32 bits or fewer: the upper half of int64_t is not part of it.
    bool narrow = false;
};

/// Formats with the semantics of C99 vsnprintf into the buffer, which always ends in a zero: the result is cut after
/// buffer.size() - 1 bytes. Known conversions: d i u x X o c s f F e E g G a A %, with flags, width, precision ("*"
/// too) and length modifiers. The type of the argument decides, so "%s" and "%ls" are the same here. A directive
/// without an argument, or with an unknown conversion, is copied unchanged. Returns the number of bytes in the buffer
/// without the zero.
size_t formatPrintf(std::span<char> buffer, std::string_view format, std::span<const FormatArgument> arguments);

}  // namespace pdx
