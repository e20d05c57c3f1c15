// Keeps a text that nests too deeply away from the TOML parser, which recurses at each level and at each level of what
// it built when that is walked and destroyed: the end of the stack would take the engine's process with it.
#pragma once

#include <cstddef>
#include <streambuf>
#include <string>
#include <vector>

namespace pdx {

/// Levels that a setting may lie below the root: parts of a heading, parts of dotted keys, arrays and inline tables
/// together. In the checked 32-bit build a level costs up to 720 bytes of stack (an inline table; an array 440, a part
/// of a heading 275), and the engine's thread has 1 MB.
inline constexpr size_t maxConfigDepth = 100;

/// Follows the text as the parser will and counts how deep it is. It never counts less than the parser recurses: from
/// the first thing on that the parser may refuse, every opening counts and no closing does.
class NestingScanner {
  public:
    explicit NestingScanner(size_t maxDepth = maxConfigDepth) : limit(maxDepth) {}
    /// Takes the next character; false once the text is nested deeper than the limit.
    bool take(char next);

  private:
    enum class Place {
        statement,       ///< before the first character of a line's heading or key
        heading,         ///< directly behind the "[" of a heading
        keyStart,        ///< where a part of a key begins
        bareKey,         ///< in a part without quotes, in which brackets and quotes mean nothing
        keyEnd,          ///< behind a part in quotes
        headingEnd,      ///< behind the "]" of a heading
        value,           ///< where a value or the end of an array is due
        scalar,          ///< in a number, a date or a boolean
        quote,           ///< behind the first quote of a value
        secondQuote,     ///< behind two quotes: empty, or the beginning of a text of several lines
        text,            ///< in a text of one line
        escape,          ///< behind a backslash in it
        longText,        ///< in a text of several lines
        longTextEscape,  ///< behind a backslash in it
        valueEnd,        ///< behind a value
        comment,
        lost,  ///< behind something that is no TOML
    };
    /// An open array or inline table, or the line itself, with the dots of the key that it is at.
    struct Level {
        char opener;
        size_t dots;
    };

    void takeOfLine(char next);
    void takeStatement(char next);
    void takeKey(char next);
    void takeKeyEnd(char next);
    void takeHeadingEnd(char next);
    void takeValue(char next);
    void takeScalar(char next);
    void takeValueEnd(char next);
    void takeQuotes(char next);
    void takeLongText(char next);
    void takeLost(char next);

    void startKey();
    void open(char opener);
    void close();
    void addDot();
    void clearDots();
    void beginComment(Place behind);

    size_t limit;
    size_t base = 0;   ///< depth of the heading in force
    size_t depth = 0;  ///< all levels and dots below it
    std::vector<Level> levels{{'\n', 0}};
    Place place = Place::statement;
    Place afterComment = Place::statement;
    Place afterText = Place::valueEnd;
    std::string scalar;
    char delimiter = '"';
    size_t delimiters = 0;
    bool pendingReturn = false;  ///< a carriage return, which only counts if no line feed follows
    bool inHeading = false;
    bool firstPart = false;  ///< nothing of the key has been read yet
};

/// Reads through to another buffer without copying, and throws when the text is nested too deeply.
class NestingGuard : public std::streambuf {
  public:
    /// The source is not owned; null reads as empty.
    explicit NestingGuard(std::streambuf* readFrom) : source(readFrom) {}

  protected:
    int_type underflow() override;
    int_type uflow() override;

  private:
    std::streambuf* source;
    NestingScanner scanner;
};

}  // namespace pdx
