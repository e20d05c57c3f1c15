#include "reporting/rules/LogLines.h"

#include "platform/rules/Utf8.h"

namespace pdx {
namespace {

constexpr size_t lineBound = 1 << 20;  // bytes of UTF-8

}  // namespace

void LogReader::feed(std::string_view block, const TakeText& take) {
    std::string_view bytes = block;
    if (!unfinished.empty()) bytes = unfinished.append(block);
    const size_t left = encoding == LogEncoding::utf16 ? unfinishedUtf16(bytes) : unfinishedUtf8(bytes);
    const std::string_view whole = bytes.substr(0, bytes.size() - left);
    takeText(decoded(whole), take);
    unfinished = std::string(bytes.substr(whole.size()));
}

void LogReader::finish(const TakeText& take) {
    takeText(decoded(unfinished), take);
    unfinished.clear();
    scrubber.scrub(line, take);
    line.clear();
}

std::string_view LogReader::decoded(std::string_view bytes) {
    if (encoding == LogEncoding::utf8 && isWellFormedUtf8(bytes)) return bytes;
    converted.clear();
    encoding == LogEncoding::utf16 ? appendUtf16Bytes(converted, bytes) : appendWellFormed(converted, bytes);
    return converted;
}

void LogReader::takeText(std::string_view text, const TakeText& take) {
    if (!line.empty()) {
        const size_t end = text.find('\n') + 1;  // 0 for none
        line.append(text, 0, end == 0 ? text.size() : end);
        cutLongLine(take);
        if (end == 0) return;
        scrubber.scrub(line, take);
        text.remove_prefix(end);
    }
    const size_t lines = text.rfind('\n') + 1;
    scrubber.scrub(text.substr(0, lines), take);
    line = text.substr(lines);
    cutLongLine(take);
}

void LogReader::cutLongLine(const TakeText& take) {
    while (line.size() >= lineBound + LogScrubber::lookAhead) {
        const size_t cut = scrubber.cutAt(line, lineBound);
        scrubber.scrub(std::string_view(line).substr(0, cut), take);
        line.erase(0, cut);
    }
}

}  // namespace pdx
