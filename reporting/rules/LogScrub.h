// Removes the name in the user's profile path, and the login code, from a report's copy of a log.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "platform/rules/Scrub.h"

namespace pdx {

/// Receives a piece of text, and must not keep a reference to it.
using TakeText = std::function<void(std::string_view)>;

struct CodePlace;

/// Scrubs the text of a log. All of it is UTF-8 and well-formed.
class LogScrubber {
  public:
    explicit LogScrubber(const ScrubTexts& texts);

    /// Passes the scrubbed text to take, in pieces. The text must be whole lines, or one piece of a line that cutAt has
    /// cut.
    void scrub(std::string_view text, const TakeText& take) const;
    /// The last position up to the bound where a line may be cut: between two characters, and not within a text to be
    /// scrubbed. Needs lookAhead bytes before and after the bound.
    [[nodiscard]] size_t cutAt(std::string_view line, size_t bound) const;

    /// In bytes: more than any profile path and any command line of Windows (32767 units).
    static constexpr size_t lookAhead = 128 << 10;

  private:
    struct Match {
        size_t begin;  ///< npos for none
        size_t end;
        const CodePlace* code = nullptr;  ///< null for a path
    };
    [[nodiscard]] Match find(std::string_view text, size_t from) const;
    [[nodiscard]] std::string scrubbed(std::string_view line) const;

    NarrowScrubTexts paths;
    /// First letters of all searched texts, each of which has at least two letters.
    std::array<bool, 256> firstLetters{};
    std::array<bool, 256> secondLetters{};
};

}  // namespace pdx
