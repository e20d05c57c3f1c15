#include "platform/Text.h"

#include <windows.h>

namespace pdx {

void assignUtf8(std::string& target, std::wstring_view text) {
    // Nearly every line of a log is plain, and then each unit is its own byte.
    target.resize(text.size());
    size_t plain = 0;
    for (; plain < text.size() && text[plain] < 0x80; ++plain) target[plain] = static_cast<char>(text[plain]);
    if (plain == text.size()) return;
    // No UTF-16 unit takes more than three bytes, so one call always fits.
    target.resize(text.size() * 3);
    const int written = text.empty()
                            ? 0
                            : WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), target.data(),
                                                  static_cast<int>(target.size()), nullptr, nullptr);
    target.resize(written > 0 ? static_cast<size_t>(written) : 0);
}

std::string toUtf8(std::wstring_view text) {
    std::string narrow;
    assignUtf8(narrow, text);
    narrow.shrink_to_fit();
    return narrow;
}

std::wstring toWide(std::string_view text) {
    // No byte of UTF-8 gives more than one UTF-16 unit.
    std::wstring wide(text.size(), L'\0');
    const int written = text.empty() ? 0
                                     : MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                                           wide.data(), static_cast<int>(wide.size()));
    wide.resize(written > 0 ? static_cast<size_t>(written) : 0);
    return wide;
}

std::wstring toLower(std::wstring text) {
    CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
    return text;
}

bool equalsIgnoreCase(std::wstring_view left, std::wstring_view right) {
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

}  // namespace pdx
