// The printf format of log messages over arguments that know their types, so that a format with more directives than
// arguments, such as the text of an exception, reads nothing that is not there.
#pragma once

#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace pdx {

/// One argument: text (UTF-8), a whole number or a floating one. Text is borrowed.
class FormatArgument {
  public:
    template <std::signed_integral Number>
    FormatArgument(Number number) : value(static_cast<int64_t>(number)) {}
    template <std::unsigned_integral Number>
    FormatArgument(Number number) : value(static_cast<uint64_t>(number)) {}
    FormatArgument(double number) : value(number) {}
    FormatArgument(std::string_view text) : value(text) {}
    FormatArgument(const std::string& text) : value(std::string_view(text)) {}

    std::variant<int64_t, uint64_t, double, std::string_view> value;
};

/// Formats with the semantics of C99 vsnprintf into the buffer, which always ends in a zero: a longer result is cut at
/// buffer.size() - 1 bytes. Known conversions: d i u x X o c s f e g p %, with flags, width, precision ("*" too) and
/// length modifiers; the type of an argument decides how it is read, so "%s" and "%ls" are the same here. A directive
/// that has no argument left, or is none, stands in the result as it stands in the format. Returns the number of bytes
/// in the buffer without the zero.
size_t formatPrintf(std::span<char> buffer, std::string_view format, std::span<const FormatArgument> arguments);

}  // namespace pdx
