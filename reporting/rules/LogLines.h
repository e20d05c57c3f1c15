// A log file that is read in blocks and becomes scrubbed text.
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

/// The encoding of a log that begins so: UTF-16 if it has the byte order mark.
constexpr LogEncoding logEncodingOf(std::string_view begin) {
    return begin.starts_with("\xFF\xFE") ? LogEncoding::utf16 : LogEncoding::utf8;
}

/// Turns blocks of any bytes, cut anywhere, into scrubbed UTF-8. Holds a line that continues in the next block, up to
/// 1 MiB of it: a longer one is scrubbed in pieces, with the same result.
class LogReader {
  public:
    LogReader(LogEncoding logEncoding, const LogScrubber& logScrubber) : encoding(logEncoding), scrubber(logScrubber) {}

    void feed(std::string_view block, const TakeText& take);
    /// Gives the text after the last line feed. Half a UTF-16 unit at the end, which is being written, is left out.
    void finish(const TakeText& take);

  private:
    std::string_view decoded(std::string_view bytes);
    void takeText(std::string_view text, const TakeText& take);
    void cutLongLine(const TakeText& take);

    LogEncoding encoding;
    const LogScrubber& scrubber;
    std::string unfinished;  ///< bytes of a character that the block's end cut
    std::string converted;   ///< a block in UTF-8
    std::string line;        ///< the part of a line that was fed so far
};

}  // namespace pdx
