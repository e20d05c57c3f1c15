// Reads a log file in blocks and scrubs it.
#pragma once

#include <string>
#include <string_view>

#include "reporting/rules/LogScrub.h"

namespace pdx {

enum class LogEncoding {
    utf8,
    utf16,  ///< little endian
};

/// The encoding of a log by its first bytes: UTF-16 if they are the byte order mark.
constexpr LogEncoding logEncodingOf(std::string_view begin) {
    return begin.starts_with("\xFF\xFE") ? LogEncoding::utf16 : LogEncoding::utf8;
}

/// Converts blocks of bytes, cut anywhere, to scrubbed UTF-8. Keeps up to 1 MiB of a line that continues in the next
/// block: a longer line is scrubbed in pieces, with the same result.
class LogReader {
  public:
    LogReader(LogEncoding logEncoding, const LogScrubber& logScrubber) : encoding(logEncoding), scrubber(logScrubber) {}

    void feed(std::string_view block, const TakeText& take);
    /// Passes the text after the last line feed to take. Omits half a UTF-16 unit at the end.
    void finish(const TakeText& take);

  private:
    std::string_view decoded(std::string_view bytes);
    void takeText(std::string_view text, const TakeText& take);
    void cutLongLine(const TakeText& take);

    LogEncoding encoding;
    const LogScrubber& scrubber;
    std::string unfinished;  ///< bytes of a character that continues in the next block
    std::string converted;   ///< a block in UTF-8
    std::string line;        ///< a line whose end has not been read
};

}  // namespace pdx
