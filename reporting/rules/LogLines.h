// A log file read in blocks and cut into lines.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pdx {

enum class LogEncoding {
    utf8,
    utf16,  ///< little endian
};

/// What a log that begins so is written in: only the byte mark of UTF-16 makes the difference.
constexpr LogEncoding logEncodingOf(std::string_view begin) {
    return begin.starts_with("\xFF\xFE") ? LogEncoding::utf16 : LogEncoding::utf8;
}

/// Cuts what is fed into lines, each with its line feed. A line that goes on in the next block is kept until it is
/// whole, however long it becomes. A block other than the last holds an even number of bytes.
class LineCutter {
  public:
    explicit LineCutter(LogEncoding encoding) : unit(encoding == LogEncoding::utf16 ? 2 : 1) {}

    /// Gives every line that the block ends to take(std::string_view), which must not keep it.
    template <typename Take>
    void feed(std::string_view block, Take&& take) {
        for (;;) {
            const size_t end = lineEnd(block);
            if (end == std::string_view::npos) break;
            const std::string_view line = block.substr(0, end);
            if (rest.empty()) {
                take(line);
            } else {
                rest.append(line);
                take(std::string_view(rest));
                rest.clear();
            }
            block.remove_prefix(end);
        }
        rest.append(block);
    }
    /// Gives what stands behind the last line feed, if anything does.
    template <typename Take>
    void finish(Take&& take) {
        if (!rest.empty()) take(std::string_view(rest));
        rest.clear();
    }

  private:
    /// The number of the block's bytes up to behind its first line feed; npos if it has none.
    [[nodiscard]] size_t lineEnd(std::string_view block) const;

    size_t unit;  ///< bytes
    std::string rest;
};

}  // namespace pdx
