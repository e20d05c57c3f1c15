// What a report's copy of a log leaves out: the name in the user's profile path, and the login code.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "platform/rules/Scrub.h"

namespace pdx {

/// Takes a piece of text, which it must not keep.
using TakeText = std::function<void(std::string_view)>;

struct CodePlace;

/// Scrubs the text of a log. All of it is UTF-8 and well-formed.
class LogScrubber {
  public:
    explicit LogScrubber(const ScrubTexts& texts);

    /// Gives the scrubbed text to take, in pieces. The text is whole lines, or a piece of one.
    void scrub(std::string_view text, const TakeText& take) const;
    /// The last place, not above the bound, where a line may be cut: between two characters, with nothing that is to be
    /// scrubbed across the cut. Needs lookAhead bytes before and after the bound to see that.
    [[nodiscard]] size_t cutAt(std::string_view line, size_t bound) const;

    /// Bytes: above the length of each profile path, and of each command line that Windows allows (32767 units).
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
    /// Of all that is searched for; each text has two at least.
    std::array<bool, 256> firstLetters{};
    std::array<bool, 256> secondLetters{};
};

}  // namespace pdx
