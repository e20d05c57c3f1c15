#include "platform/rules/CommandLine.h"

#include <algorithm>

#include "platform/rules/AsciiCase.h"

namespace pdx {
namespace {

struct DisplaySwitch {
    std::wstring_view word;
    BOOTSTRAPPER_DISPLAY display;
};

/// The engine's switches.
constexpr DisplaySwitch displaySwitches[] = {
    {L"q", BOOTSTRAPPER_DISPLAY_NONE},          {L"quiet", BOOTSTRAPPER_DISPLAY_NONE},
    {L"s", BOOTSTRAPPER_DISPLAY_NONE},          {L"silent", BOOTSTRAPPER_DISPLAY_NONE},
    {L"passive", BOOTSTRAPPER_DISPLAY_PASSIVE},
};

/// The word of "/Word" or "-Word" in lower case; empty for any other argument.
std::wstring switchOf(std::wstring_view argument) {
    if (!argument.starts_with(L'-') && !argument.starts_with(L'/')) return {};
    return loweredAscii(argument.substr(1));
}

/// Reads one argument of a command line as the system splits it. A quote opens and closes anywhere in the argument.
/// After an odd number of backslashes a quote is a character; so is the third of three adjacent quotes.
class ArgumentReader {
  public:
    /// False for the blank after the argument.
    bool take(wchar_t c) {
        if (c == L'"') {
            const bool escaped = backslashes % 2 == 1;
            backslashes = 0;
            if (!escaped && ++quotes < 3) return true;
            if (!escaped) quotes = 0;
        } else {
            if (quotes != 1 && (c == L' ' || c == L'\t')) return false;
            if (quotes == 2) quotes = 0;
            backslashes = c == L'\\' ? backslashes + 1 : 0;
        }
        read += c;
        return true;
    }

    /// The argument as the program gets it, but with all backslashes before a quote.
    [[nodiscard]] std::wstring_view text() const { return read; }
    [[nodiscard]] bool quoted() const { return quotes == 1; }
    /// Whether the last character was a closing quote.
    [[nodiscard]] bool closed() const { return quotes == 2; }

  private:
    std::wstring read;
    size_t backslashes = 0;
    int quotes = 0;  ///< 1 inside a quote, 2 just after its end
};

/// The first of some arguments, and the login code in it.
struct FoundArgument {
    size_t end;            ///< after the blank that ended the argument
    size_t codeBegin = 0;  ///< both 0 if there is no code
    size_t codeEnd = 0;
    bool closesQuote = false;  ///< the code holds the end of a quote that began before it
};

FoundArgument findCode(std::wstring_view arguments) {
    constexpr std::wstring_view name = L"KESTREL_AUTHCODE=";
    ArgumentReader argument;
    size_t end = 0;
    size_t code = 0;
    bool quotedWhole = false;
    for (; end < arguments.size() && argument.take(arguments[end]); ++end) {
        if (code != 0 || !argument.text().ends_with(name)) continue;
        code = end + 1;
        quotedWhole = argument.quoted();
    }
    // Quotes around the whole argument are kept.
    const size_t codeEnd = quotedWhole && argument.closed() ? end - 1 : end;
    const size_t afterBlank = std::min(end + 1, arguments.size());
    if (code == 0 || code >= codeEnd) return {afterBlank};
    return {afterBlank, code, codeEnd, quotedWhole && !argument.closed() && !argument.quoted()};
}

/// The length of the program before the arguments; here only the next quote closes a quote.
size_t programLength(std::wstring_view commandLine) {
    const bool quoted = commandLine.starts_with(L'"');
    const size_t last = quoted ? commandLine.find(L'"', 1) : commandLine.find_first_of(L" \t");
    if (last == std::wstring_view::npos) return commandLine.size();
    return quoted ? last + 1 : last;
}

}  // namespace

std::optional<std::pair<std::wstring, std::wstring>> variableOfArgument(std::wstring_view argument) {
    if (argument.starts_with(L'-') || argument.starts_with(L'/')) return std::nullopt;
    const size_t equals = argument.find(L'=');
    if (equals == std::wstring_view::npos) return std::nullopt;
    return std::pair(std::wstring(argument.substr(0, equals)), std::wstring(argument.substr(equals + 1)));
}

BOOTSTRAPPER_DISPLAY displayTowardsUser(BOOTSTRAPPER_DISPLAY display, BOOTSTRAPPER_RELATION_TYPE relation,
                                        std::span<const std::wstring> arguments) {
    if (relation != BOOTSTRAPPER_RELATION_UPDATE) return display;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::wstring word = switchOf(arguments[i]);
        for (const DisplaySwitch& row : displaySwitches)
            if (word == row.word) display = row.display;
        if (word == L"l" || word == L"log") ++i;  // the next argument is a file name
    }
    return display;
}

std::wstring hideAuthcode(std::wstring_view commandLine) {
    const size_t program = programLength(commandLine);
    return std::wstring(commandLine.substr(0, program)) + hideAuthcodeOfArguments(commandLine.substr(program));
}

std::wstring hideAuthcodeOfArguments(std::wstring_view arguments) {
    std::wstring hidden;
    while (!arguments.empty()) {
        const FoundArgument argument = findCode(arguments);
        if (argument.codeBegin == argument.codeEnd) {
            hidden += arguments.substr(0, argument.end);
        } else {
            hidden += arguments.substr(0, argument.codeBegin);
            hidden += argument.closesQuote ? L"####\"" : L"####";
            hidden += arguments.substr(argument.codeEnd, argument.end - argument.codeEnd);
        }
        arguments.remove_prefix(argument.end);
    }
    return hidden;
}

}  // namespace pdx
