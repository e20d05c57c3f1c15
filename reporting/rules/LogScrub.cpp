#include "reporting/rules/LogScrub.h"

#include <algorithm>

#include "platform/rules/CommandLine.h"
#include "platform/rules/Utf8.h"

namespace pdx {

/// Where a log names the login code.
struct CodePlace {
    std::string_view before;  ///< the rest of the line after this contains the code
    std::string_view after;   ///< the end of such a line
    std::string (*hide)(std::string_view rest);
};

namespace {

constexpr std::string_view hidden = "####";

std::string hideAll(std::string_view) { return std::string(hidden); }

template <std::wstring (*hide)(std::wstring_view)>
std::string hideIn(std::string_view commandLine) {
    return toUtf8(hide(toWide(commandLine)));
}

/// The beginning of the character at a position.
size_t betweenCharacters(std::string_view text, size_t at) {
    while (at > 0 && at < text.size() && (static_cast<uint8_t>(text[at]) & 0xC0) == 0x80) --at;
    return at;
}

/// The end of the line at a position, but at most lookAhead bytes after it. A carriage return alone ends a line too.
size_t lineEnd(std::string_view text, size_t at) {
    const size_t end = std::min(text.find_first_of("\r\n", at), text.size());
    return end - at < LogScrubber::lookAhead ? end : betweenCharacters(text, at + LogScrubber::lookAhead - 1);
}

/// The position of the next such letter; the text's size if there is none. Fast on purpose: this loop reads every byte
/// of a log.
size_t nextOf(const std::array<bool, 256>& letters, std::string_view text, size_t from) {
    const char* const end = text.data() + text.size();
    const char* at = text.data() + from;
    while (at < end && !letters[static_cast<uint8_t>(*at)]) ++at;
    return static_cast<size_t>(at - text.data());
}

/// As starts_with, for a text that is not empty. Compares the last letter first: most candidates differ there.
bool beginsWith(std::string_view text, std::string_view beginning) {
    return text.size() >= beginning.size() && text[beginning.size() - 1] == beginning.back() &&
           text.starts_with(beginning);
}

/// The library's two lines, and those of the engine, which hides the code only where the bundle marks it.
constexpr CodePlace codePlaces[] = {
    {"KESTREL_AUTHCODE]; result=[", "]", hideAll},
    {"Command line: [", "]", hideIn<hideAuthcode>},
    {"Command Line: '", "'", hideIn<hideAuthcodeOfArguments>},
    {"KESTREL_AUTHCODE' to value '", "'", hideAll},
    {"KESTREL_AUTHCODE = ", "", hideAll},
};

}  // namespace

LogScrubber::LogScrubber(const ScrubTexts& texts) : paths(narrowScrubTexts(texts)) {
    const auto add = [this](std::string_view text) {
        firstLetters[static_cast<uint8_t>(text[0])] = true;
        secondLetters[static_cast<uint8_t>(text[1])] = true;
    };
    for (size_t i = 0; i < paths.size(); ++i) {
        std::string& path = paths[i].search;
        // The short form equals the long one if all names are short.
        if (i >= 2 && path == paths[i - 2].search) path.clear();
        if (path.size() < 2) path.clear();
        if (!path.empty()) add(path);
    }
    for (const CodePlace& place : codePlaces) add(place.before);
}

void LogScrubber::scrub(std::string_view text, const TakeText& take) const {
    size_t done = 0;
    const auto give = [&](size_t end) {
        if (end > done) take(text.substr(done, end - done));
        done = end;
    };
    // Nearly all lines are unchanged and are passed on together.
    for (Match match = find(text, 0); match.begin != text.npos; match = find(text, done)) {
        // The line of the match. Without a line feed before it rfind gives npos, and npos + 1 is 0.
        give(std::max(done, text.rfind('\n', match.begin) + 1));
        const size_t feed = text.find('\n', match.begin);
        const size_t end = feed == text.npos ? text.size() : feed + 1;
        take(scrubbed(text.substr(done, end - done)));
        done = end;
    }
    give(text.size());
}

size_t LogScrubber::cutAt(std::string_view line, size_t bound) const {
    const size_t cut = betweenCharacters(line, bound);
    for (Match match = find(line, cut - lookAhead); match.begin < cut;) {
        if (match.end > cut) return match.begin;
        // What lies in a code's line is hidden with it.
        match = find(line, match.code ? match.end : match.begin + 1);
    }
    return cut;
}

LogScrubber::Match LogScrubber::find(std::string_view text, size_t from) const {
    for (size_t at = nextOf(firstLetters, text, from); at + 1 < text.size(); at = nextOf(firstLetters, text, at + 1)) {
        if (!secondLetters[static_cast<uint8_t>(text[at + 1])]) continue;
        const std::string_view here = text.substr(at);
        for (const auto& row : paths)
            if (!row.search.empty() && beginsWith(here, row.search)) return {at, at + row.search.size()};
        for (const CodePlace& place : codePlaces)
            if (beginsWith(here, place.before)) return {at, lineEnd(text, at), &place};
    }
    return {text.npos, text.npos};
}

std::string LogScrubber::scrubbed(std::string_view line) const {
    std::string text;
    size_t done = 0;
    for (Match match = find(line, 0); match.begin != line.npos; match = find(line, match.end)) {
        if (!match.code) continue;
        const size_t begin = match.begin + match.code->before.size();
        size_t end = std::max(begin, match.end);
        if (line.substr(begin, end - begin).ends_with(match.code->after)) end -= match.code->after.size();
        text.append(line, done, begin - done);
        if (end > begin) text += match.code->hide(line.substr(begin, end - begin));
        done = end;
    }
    text.append(line, done);
    return pdx::scrub(paths, std::move(text));
}

}  // namespace pdx
