#include "platform/rules/Utf8.h"

#include <cstring>

namespace pdx {
namespace {

constexpr uint32_t replacement = 0xFFFD;

bool isLead(uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isTrail(uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

/// The code point at a position in a text of that many units; moves the position after it.
template <typename UnitAt>
uint32_t takeUnits(UnitAt unitAt, size_t size, size_t& at) {
    const uint32_t unit = unitAt(at++);
    if (isLead(unit) && at < size && isTrail(unitAt(at)))
        return 0x10000 + ((unit - 0xD800) << 10) + (unitAt(at++) - 0xDC00);
    return isLead(unit) || isTrail(unit) ? replacement : unit;
}

uint32_t takeWide(std::wstring_view text, size_t& at) {
    const auto unitAt = [&](size_t place) -> uint32_t {
        return sizeof(wchar_t) == 2 ? static_cast<uint16_t>(text[place]) : static_cast<uint32_t>(text[place]);
    };
    return takeUnits(unitAt, text.size(), at);
}

/// The number of ASCII bytes from the position on; most text is ASCII.
size_t plainLength(std::string_view text, size_t at) {
    const size_t begin = at;
    constexpr uint64_t highBits = 0x8080808080808080;
    for (uint64_t eight = 0; at + sizeof eight <= text.size(); at += sizeof eight) {
        std::memcpy(&eight, text.data() + at, sizeof eight);
        if (eight & highBits) break;
    }
    while (at < text.size() && static_cast<uint8_t>(text[at]) < 0x80) ++at;
    return at - begin;
}

uint32_t takeNarrow(std::string_view text, size_t& at) {
    const auto lead = static_cast<uint8_t>(text[at++]);
    if (lead < 0x80) return lead;
    if (lead < 0xC2 || lead > 0xF4) return replacement;
    const int followers = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    // The range of the second byte excludes overlong forms, surrogates and code points above U+10FFFF.
    uint8_t lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    uint8_t highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    uint32_t point = lead & (0x3Fu >> followers);
    for (int i = 0; i < followers; ++i) {
        const auto follower = at < text.size() ? static_cast<uint8_t>(text[at]) : uint8_t{0};
        if (follower < lowest || follower > highest) return replacement;
        point = point << 6 | (follower & 0x3Fu);
        lowest = 0x80;
        highest = 0xBF;
        ++at;
    }
    return point;
}

constexpr size_t longestCharacter = 4;  // bytes

/// Writes one code point; returns the position after it.
char* writeUtf8(char* target, uint32_t codePoint) {
    const auto add = [&](uint32_t byte) { *target++ = static_cast<char>(byte); };
    if (codePoint < 0x80) {
        add(codePoint);
        return target;
    }
    if (codePoint < 0x800) {
        add(0xC0 | codePoint >> 6);
    } else {
        if (codePoint < 0x10000) {
            add(0xE0 | codePoint >> 12);
        } else {
            add(0xF0 | codePoint >> 18);
            add(0x80 | (codePoint >> 12 & 0x3F));
        }
        add(0x80 | (codePoint >> 6 & 0x3F));
    }
    add(0x80 | (codePoint & 0x3F));
    return target;
}

}  // namespace

void appendUtf8(std::string& target, uint32_t codePoint) {
    char bytes[longestCharacter];
    target.append(bytes, writeUtf8(bytes, codePoint));
}

void assignUtf8(std::string& target, std::wstring_view text) {
    // Nearly every line of a log is ASCII, in which each unit is one byte.
    target.resize(text.size());
    size_t at = 0;
    for (; at < text.size() && static_cast<uint32_t>(text[at]) < 0x80; ++at) target[at] = static_cast<char>(text[at]);
    target.resize(at);
    while (at < text.size()) appendUtf8(target, takeWide(text, at));
}

std::string toUtf8(std::wstring_view text) {
    std::string narrow;
    assignUtf8(narrow, text);
    return narrow;
}

std::wstring toWide(std::string_view text) {
    std::wstring wide(text.size(), L'\0');  // no character has more units than bytes
    size_t length = 0;
    for (size_t at = 0; at < text.size();) {
        uint32_t point = static_cast<uint8_t>(text[at]);
        if (point < 0x80)
            ++at;  // ASCII, most of the text, without a call
        else
            point = takeNarrow(text, at);
        if (sizeof(wchar_t) == 2 && point > 0xFFFF) {
            wide[length++] = static_cast<wchar_t>(0xD7C0 + (point >> 10));
            point = 0xDC00 | (point & 0x3FF);
        }
        wide[length++] = static_cast<wchar_t>(point);
    }
    wide.resize(length);
    return wide;
}

bool isWellFormedUtf8(std::string_view bytes) {
    for (size_t at = 0;;) {
        at += plainLength(bytes, at);
        if (at == bytes.size()) return true;
        if (takeNarrow(bytes, at) == replacement) return false;
    }
}

void appendWellFormed(std::string& target, std::string_view bytes) {
    for (size_t at = 0;;) {
        const size_t plain = plainLength(bytes, at);
        target.append(bytes, at, plain);
        at += plain;
        if (at == bytes.size()) return;
        appendUtf8(target, takeNarrow(bytes, at));
    }
}

void appendUtf16Bytes(std::string& target, std::string_view bytes) {
    const auto byteAt = [&](size_t place) -> uint32_t { return static_cast<uint8_t>(bytes[place]); };
    const auto unitAt = [&](size_t place) { return byteAt(2 * place) | byteAt(2 * place + 1) << 8; };
    const size_t units = bytes.size() / 2;
    const size_t begin = target.size();
    target.resize(begin + units * 3);  // no unit has more bytes, and a pair has four
    char* end = target.data() + begin;
    for (size_t at = 0; at < units;) {
        const uint32_t unit = unitAt(at);
        if (unit < 0x80)
            *end++ = static_cast<char>(unit), ++at;
        else
            end = writeUtf8(end, takeUnits(unitAt, units, at));
    }
    target.resize(static_cast<size_t>(end - target.data()));
}

size_t unfinishedUtf8(std::string_view bytes) {
    for (size_t count = 1; count <= 3 && count <= bytes.size(); ++count) {
        const auto byte = static_cast<uint8_t>(bytes[bytes.size() - count]);
        if (byte >= 0xC0) return count < (byte < 0xE0 ? 2u : byte < 0xF0 ? 3u : 4u) ? count : 0;
        if (byte < 0x80) return 0;
    }
    return 0;
}

size_t unfinishedUtf16(std::string_view bytes) {
    const size_t odd = bytes.size() % 2;
    if (bytes.size() < 2) return odd;
    const auto high = static_cast<uint8_t>(bytes[bytes.size() - odd - 1]);  // byte of the last whole unit
    return isLead(uint32_t{high} << 8) ? odd + 2 : odd;
}

}  // namespace pdx
