// How a program splits its command line, written a second time from the documented rules of CommandLineToArgvW.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pdx::fuzz {

/// The arguments of a command line, without the program before them.
inline std::vector<std::wstring> splitArguments(std::wstring_view line) {
    std::vector<std::wstring> arguments;
    for (size_t at = 0;;) {
        while (at < line.size() && (line[at] == L' ' || line[at] == L'\t')) ++at;
        if (at == line.size()) return arguments;
        std::wstring argument;
        for (int quotes = 0; at < line.size() && (quotes == 1 || (line[at] != L' ' && line[at] != L'\t'));) {
            size_t backslashes = 0;
            for (; at < line.size() && line[at] == L'\\'; ++at) ++backslashes;
            if (at == line.size() || line[at] != L'"') {
                argument.append(backslashes, L'\\');
                if (backslashes > 0) continue;
                argument += line[at++];
                continue;
            }
            // Before a quote two backslashes are one, and an odd one makes the quote a character.
            argument.append(backslashes / 2, L'\\');
            ++at;
            if (backslashes % 2 == 1) {
                argument += L'"';
                continue;
            }
            // The second and third of three adjacent quotes are one character and leave the quoted part.
            if (++quotes == 2 && at < line.size() && line[at] == L'"') {
                argument += L'"';
                ++at;
            }
            if (quotes == 2) quotes = 0;
        }
        arguments.push_back(argument);
    }
}

}  // namespace pdx::fuzz
