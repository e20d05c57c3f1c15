// A log file that is read in blocks and goes on as scrubbed text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "reporting/rules/LogScrub.h"

namespace pdx {

enum class LogEncoding {
    utf8,
    utf16,  ///< little endian
};

/// What a log that begins so is written in: only the byte mark of UTF-16 makes the difference.
constexpr LogEncoding logEncodingOf(std::string_view begin) {
    return begin.starts_with("\xFF\xFE") ? LogEncoding::utf16 : LogEncoding::utf8;
}

/// Turns what is fed into scrubbed UTF-8, whatever its bytes are and wherever its blocks end. Holds a line that goes on
/// in the next block, up to 1 MiB of it: a longer one is scrubbed in pieces, and comes out the same.
class LogReader {
  public:
    LogReader(LogEncoding logEncoding, const LogScrubber& logScrubber) : encoding(logEncoding), scrubber(logScrubber) {}

    void feed(std::string_view block, const TakeText& take);
    /// Gives what stands after the last line feed. Half a UTF-16 unit at the end, which is being written, is left out.
    void finish(const TakeText& take);

  private:
    std::string_view decoded(std::string_view bytes);
    void takeText(std::string_view text, const TakeText& take);
    void cutLongLine(const TakeText& take);

    LogEncoding encoding;
    const LogScrubber& scrubber;
    std::string unfinished;  ///< bytes of a character that the block's end cut
    std::string converted;   ///< a block in UTF-8
    std::string line;        ///< what of a line has come so far
};

}  // namespace pdx
