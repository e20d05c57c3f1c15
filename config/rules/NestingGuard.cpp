#include "config/rules/NestingGuard.h"

#include <stdexcept>
#include <string_view>

namespace pdx {
namespace {

constexpr bool isBlank(char letter) { return letter == ' ' || letter == '\t'; }
constexpr bool isQuote(char letter) { return letter == '"' || letter == '\''; }
constexpr bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }
constexpr bool isHexDigit(char letter) {
    return isDigit(letter) || (letter >= 'a' && letter <= 'f') || (letter >= 'A' && letter <= 'F');
}

/// Whether a text is a number, a boolean, a date or a time from its first character to its last, so that the parser
/// reads all of it or none.
class ScalarMatcher {
  public:
    explicit ScalarMatcher(std::string_view text) : whole(text.substr(0, text.find_last_not_of(" \t") + 1)) {}

    bool matches() {
        for (const std::string_view word : {"true", "false", "inf", "+inf", "-inf", "nan", "+nan", "-nan"})
            if (whole == word) return true;
        return begin() && (hexadecimal() || (begin() && number()) || (begin() && time()) || (begin() && dateTime()));
    }

  private:
    bool begin() {
        rest = whole;
        return true;
    }
    bool end() const { return rest.empty(); }
    bool one(std::string_view choice) {
        if (rest.empty() || choice.find(rest.front()) == std::string_view::npos) return false;
        rest.remove_prefix(1);
        return true;
    }
    bool digits(bool (*isOne)(char)) {
        do {
            if (rest.empty() || !isOne(rest.front())) return false;
            while (!rest.empty() && isOne(rest.front())) rest.remove_prefix(1);
        } while (one("_"));
        return true;
    }
    bool hexadecimal() { return one("0") && (one("x") ? digits(isHexDigit) : one("ob") && digits(isDigit)) && end(); }
    bool number() {
        one("+-");
        if (!digits(isDigit) || (one(".") && !digits(isDigit))) return false;
        if (!one("eE")) return end();
        one("+-");
        return digits(isDigit) && end();
    }
    /// "d" stands for a digit.
    bool shape(std::string_view wanted) {
        for (const char letter : wanted)
            if (!one(letter == 'd' ? std::string_view("0123456789") : std::string_view(&letter, 1))) return false;
        return true;
    }
    bool clock() { return shape("dd:dd:dd") && (!one(".") || (digits(isDigit))); }
    bool time() { return clock() && end(); }
    bool dateTime() {
        if (!shape("dddd-dd-dd")) return false;
        if (end()) return true;
        if (!one("T ") || !clock()) return false;
        return end() || (one("Z") && end()) || (one("+-") && shape("dd:dd") && end());
    }

    std::string_view whole;
    std::string_view rest;
};

}  // namespace

bool NestingScanner::take(char next) {
    if (pendingReturn && next != '\n') takeOfLine('\r');
    pendingReturn = next == '\r';
    if (!pendingReturn) takeOfLine(next);
    return base + depth <= limit;
}

void NestingScanner::takeOfLine(char next) {
    switch (place) {
        case Place::statement:
            takeStatement(next);
            break;
        case Place::heading:
            // "[[" declares one more level, the array that its table is in.
            if (next == '[') {
                addDot();
                startKey();
            } else {
                startKey();
                takeKey(next);
            }
            break;
        case Place::keyStart:
        case Place::bareKey:
            takeKey(next);
            break;
        case Place::keyEnd:
            takeKeyEnd(next);
            break;
        case Place::headingEnd:
            takeHeadingEnd(next);
            break;
        case Place::value:
            takeValue(next);
            break;
        case Place::scalar:
            takeScalar(next);
            break;
        case Place::quote:
        case Place::secondQuote:
        case Place::text:
        case Place::escape:
            takeQuotes(next);
            break;
        case Place::longText:
        case Place::longTextEscape:
            takeLongText(next);
            break;
        case Place::valueEnd:
            takeValueEnd(next);
            break;
        case Place::comment:
            if (next != '\n') break;
            place = afterComment;
            takeOfLine(next);
            break;
        case Place::lost:
            takeLost(next);
            break;
    }
}

void NestingScanner::takeStatement(char next) {
    if (isBlank(next) || next == '\n') return;
    clearDots();
    if (next == '#') {
        beginComment(Place::statement);
    } else if (next == '[') {
        inHeading = true;
        base = 0;
        addDot();
        place = Place::heading;
    } else {
        inHeading = false;
        startKey();
        takeKey(next);
    }
}

void NestingScanner::startKey() {
    place = Place::keyStart;
    firstPart = true;
}

void NestingScanner::takeKey(char next) {
    if (place == Place::keyStart) {
        if (isBlank(next)) return;
        if (isQuote(next)) {
            firstPart = false;
            delimiter = next;
            afterText = Place::keyEnd;
            place = Place::text;
            return;
        }
        if (next == '}' && firstPart && levels.back().opener == '{') {
            close();
            return;
        }
        if (next == '.' || next == '=' || next == ']' || next == '\n') {
            place = Place::lost;
            return;
        }
        firstPart = false;
        place = Place::bareKey;
        return;
    }
    if (next == '.' || next == '=' || next == ']' || next == '\n') takeKeyEnd(next);
}

void NestingScanner::takeKeyEnd(char next) {
    if (isBlank(next)) return;
    if (next == '.') {
        addDot();
        place = Place::keyStart;
    } else if (next == '=' && !inHeading) {
        place = Place::value;
    } else if (next == ']' && inHeading) {
        place = Place::headingEnd;
    } else {
        place = Place::lost;
    }
}

void NestingScanner::takeHeadingEnd(char next) {
    if (isBlank(next) || next == ']') return;
    if (next == '#') {
        beginComment(Place::headingEnd);
    } else if (next == '\n') {
        base = levels.back().dots;
        clearDots();
        inHeading = false;
        place = Place::statement;
    } else {
        place = Place::lost;
    }
}

void NestingScanner::takeValue(char next) {
    const bool inArray = levels.back().opener == '[';
    if (isBlank(next) || (inArray && next == '\n')) return;
    if (isQuote(next)) {
        delimiter = next;
        afterText = Place::valueEnd;
        place = Place::quote;
    } else if (next == '[') {
        open('[');
    } else if (next == '{') {
        open('{');
        startKey();
    } else if (next == ']' && inArray) {
        close();
    } else if (next == '#' && inArray) {
        beginComment(Place::value);
    } else if (next == ',' || next == ']' || next == '}' || next == '#' || next == '\n') {
        place = Place::lost;
    } else {
        scalar.clear();
        place = Place::scalar;
        takeScalar(next);
    }
}

void NestingScanner::takeScalar(char next) {
    if (std::string_view(",]}#\n[{\"'").find(next) == std::string_view::npos) {
        scalar += next;
        return;
    }
    // Behind "1x" in an array the parser takes the "x" for the array's end.
    if (levels.back().opener == '[' && !ScalarMatcher(scalar).matches()) {
        place = Place::lost;
        takeLost(next);
    } else {
        takeValueEnd(next);
    }
}

void NestingScanner::takeValueEnd(char next) {
    const char opener = levels.back().opener;
    place = Place::valueEnd;
    if (isBlank(next)) return;
    if (next == '\n' && opener != '{') {
        if (opener == '\n') {
            clearDots();
            place = Place::statement;
        }
    } else if (next == '#' && opener != '{') {
        beginComment(Place::valueEnd);
    } else if (next == ',' && opener == '[') {
        place = Place::value;
    } else if (next == ',' && opener == '{') {
        clearDots();
        startKey();
    } else if (next == ']' && opener == '[') {
        close();
    } else if (next == '}' && opener == '{') {
        close();
    } else {
        place = Place::lost;
        takeLost(next);
    }
}

void NestingScanner::takeQuotes(char next) {
    if (place == Place::quote && next == delimiter) {
        place = Place::secondQuote;
    } else if (place == Place::secondQuote) {
        if (next == delimiter) {
            delimiters = 0;
            place = Place::longText;
        } else {
            takeValueEnd(next);
        }
    } else if (place == Place::escape) {
        place = Place::text;
    } else if (next == '\n') {
        place = Place::lost;
    } else if (next == delimiter) {
        place = afterText;
    } else {
        place = next == '\\' && delimiter == '"' ? Place::escape : Place::text;
    }
}

void NestingScanner::takeLongText(char next) {
    if (place == Place::longTextEscape) {
        place = Place::longText;
        return;
    }
    delimiters = next == delimiter ? delimiters + 1 : 0;
    if (delimiters == 3) place = Place::valueEnd;
    if (next == '\\' && delimiter == '"') place = Place::longTextEscape;
}

void NestingScanner::takeLost(char next) {
    if (next == '[' || next == '{' || next == '.') ++depth;
}

void NestingScanner::open(char opener) {
    levels.push_back({opener, 0});
    ++depth;
}

void NestingScanner::close() {
    clearDots();
    levels.pop_back();
    --depth;
    place = Place::valueEnd;
}

void NestingScanner::addDot() {
    ++levels.back().dots;
    ++depth;
}

void NestingScanner::clearDots() {
    depth -= levels.back().dots;
    levels.back().dots = 0;
}

void NestingScanner::beginComment(Place behind) {
    afterComment = behind;
    place = Place::comment;
}

std::streambuf::int_type NestingGuard::underflow() { return source ? source->sgetc() : traits_type::eof(); }

std::streambuf::int_type NestingGuard::uflow() {
    if (!source) return traits_type::eof();
    const int_type next = source->sbumpc();
    if (next != traits_type::eof() && !scanner.take(traits_type::to_char_type(next)))
        throw std::runtime_error("The text is nested more than " + std::to_string(maxConfigDepth) + " levels deep");
    return next;
}

}  // namespace pdx
