// The printf format of log messages over arguments that know their types. A format with more directives than arguments,
// such as the text of an exception, then reads no memory beyond them.
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
    template <std::integral Number>
    FormatArgument(Number number) : value(static_cast<int64_t>(number)), narrow(sizeof(Number) <= sizeof(int32_t)) {}
    FormatArgument(double number) : value(number) {}
    FormatArgument(std::string_view text) : value(text) {}
    FormatArgument(const std::string& text) : value(std::string_view(text)) {}

    /// A whole number's bits; whether they are read with or without sign is the directive's matter.
    std::variant<int64_t, double, std::string_view> value;
    /// The number has 32 bits or fewer: a sign in front of them is not part of it.
    bool narrow = false;
};

/// Formats with the semantics of C99 vsnprintf into the buffer, which always ends in a zero: a longer result is cut at
/// buffer.size() - 1 bytes. Known conversions: d i u x X o c s f e g a %, with flags, width, precision ("*" too) and
/// length modifiers. The type of an argument decides how it is read, so "%s" and "%ls" are the same here. A directive
/// that has no argument left, or is none, is copied to the result unchanged. Returns the number of bytes in the buffer
/// without the zero.
size_t formatPrintf(std::span<char> buffer, std::string_view format, std::span<const FormatArgument> arguments);

}  // namespace pdx
