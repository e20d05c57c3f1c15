#include "platform/rules/Format.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>

namespace pdx {
namespace {

/// Not strchr, which finds the zero at its text's end too.
bool isOneOf(std::string_view letters, char letter) { return letters.find(letter) != std::string_view::npos; }

/// Writes into the buffer until it is full and drops the rest.
class Output {
  public:
    explicit Output(std::span<char> target) : buffer(target) {}

    void append(std::string_view text) {
        const size_t space = buffer.size() - 1 - used;
        const size_t count = std::min(space, text.size());
        std::memcpy(buffer.data() + used, text.data(), count);
        used += count;
    }
    void pad(size_t count) {
        count = std::min(count, buffer.size() - 1 - used);
        std::memset(buffer.data() + used, ' ', count);
        used += count;
    }
    size_t finish() {
        buffer[used] = '\0';
        return used;
    }

  private:
    std::span<char> buffer;
    size_t used = 0;
};

/// One parsed directive: the part between "%" and the conversion letter, "*" already replaced.
struct Directive {
    std::string flags;
    std::optional<int> width;
    std::optional<int> precision;
    char conversion = '\0';
};

class Formatter {
  public:
    Formatter(std::span<char> buffer, std::string_view text, std::span<const FormatArgument> given)
        : output(buffer), format(text), arguments(given) {}

    size_t run() {
        while (position < format.size()) {
            const size_t percent = format.find('%', position);
            output.append(format.substr(position, percent - position));
            if (percent == std::string_view::npos) break;
            position = percent;
            directive();
        }
        return output.finish();
    }

  private:
    void directive() {
        const size_t start = position++;
        const size_t firstArgument = next;
        Directive parsed;
        while (position < format.size() && isOneOf("-+ #0", format[position])) parsed.flags += format[position++];
        parsed.width = number();
        if (position < format.size() && format[position] == '.') {
            ++position;
            parsed.precision = number().value_or(0);
        }
        while (position < format.size() && isOneOf("hlLjztIqw", format[position])) ++position;
        if (position < format.size()) parsed.conversion = format[position++];
        if (parsed.conversion == '%') {
            output.append("%");
        } else if (next >= arguments.size() || !print(parsed, arguments[next])) {
            next = firstArgument;
            output.append(format.substr(start, position - start));
        } else {
            ++next;
        }
    }

    std::optional<int> number() {
        if (position < format.size() && format[position] == '*') {
            ++position;
            if (next >= arguments.size()) return std::nullopt;
            const auto* given = std::get_if<int64_t>(&arguments[next].value);
            if (!given) return std::nullopt;
            ++next;
            return static_cast<int>(*given);
        }
        int result = 0;
        const char* begin = format.data() + position;
        const auto parsed = std::from_chars(begin, format.data() + format.size(), result);
        if (parsed.ec != std::errc()) return std::nullopt;
        position += static_cast<size_t>(parsed.ptr - begin);
        return result;
    }

    bool print(const Directive& directive, const FormatArgument& argument) {
        if (const auto* text = std::get_if<std::string_view>(&argument.value)) {
            if (directive.conversion != 's') return false;
            printText(directive, *text);
            return true;
        }
        if (const auto* floating = std::get_if<double>(&argument.value)) {
            if (!isOneOf("fFeEgGaA", directive.conversion)) return false;
            printNumber(directive, "", *floating);
            return true;
        }
        const int64_t number = std::get<int64_t>(argument.value);
        const int64_t withSign = argument.narrow ? static_cast<int32_t>(number) : number;
        const uint64_t bits = argument.narrow ? static_cast<uint32_t>(number) : static_cast<uint64_t>(number);
        switch (directive.conversion) {
            case 'd':
            case 'i':
                printNumber(directive, "ll", static_cast<long long>(withSign));
                return true;
            case 'u':
            case 'x':
            case 'X':
            case 'o':
                printNumber(directive, "ll", static_cast<unsigned long long>(bits));
                return true;
            case 'c':
                printNumber(directive, "", static_cast<int>(bits));
                return true;
            default:
                return false;
        }
    }

    void printText(const Directive& directive, std::string_view text) {
        if (directive.precision && *directive.precision >= 0)
            text = text.substr(0, static_cast<size_t>(*directive.precision));
        appendPadded(directive, text);
    }

    /// Pads to the directive's width.
    void appendPadded(const Directive& directive, std::string_view text) {
        const int64_t width = directive.width.value_or(0);
        const bool left = width < 0 || directive.flags.find('-') != std::string::npos;
        const auto wanted = static_cast<size_t>(width < 0 ? -width : width);
        const size_t padding = wanted > text.size() ? wanted - text.size() : 0;
        if (!left) output.pad(padding);
        output.append(text);
        if (left) output.pad(padding);
    }

    template <typename Number>
    void printNumber(const Directive& directive, const char* length, Number number) {
        // The widest field and the highest precision that snprintf gets.
        constexpr int widest = 400;
        const int width = directive.width.value_or(0);
        std::string single = "%" + directive.flags;
        if (directive.width) single += std::to_string(std::clamp(width, -widest, widest));
        if (directive.precision) single += "." + std::to_string(std::min(*directive.precision, widest));
        single += length;
        single += directive.conversion;
        char digits[widest + 400];  // the longest "%f" has a sign, 309 digits, the point and `widest` decimals
        const int count = std::snprintf(digits, sizeof digits, single.c_str(), number);
        if (count <= 0) return;
        // snprintf has padded up to `widest`; only a field beyond that is padded here.
        appendPadded(directive, {digits, std::min<size_t>(static_cast<size_t>(count), sizeof digits - 1)});
    }

    Output output;
    std::string_view format;
    std::span<const FormatArgument> arguments;
    size_t position = 0;
    size_t next = 0;
};

}  // namespace

size_t formatPrintf(std::span<char> buffer, std::string_view format, std::span<const FormatArgument> arguments) {
    return buffer.empty() ? 0 : Formatter(buffer, format, arguments).run();
}

}  // namespace pdx
