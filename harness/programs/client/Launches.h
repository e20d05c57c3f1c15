// What the sample programs report to a scenario: one UTF-8 line after the other in C:\PalisadeTest\launches.txt.
#pragma once

#include <string>

#include "platform/Handles.h"
#include "platform/Text.h"

namespace client {

inline constexpr wchar_t exchangeFolder[] = L"C:\\PalisadeTest";

inline bool note(const std::wstring& text) {
    CreateDirectoryW(exchangeFolder, nullptr);
    const std::wstring path = std::wstring(exchangeFolder) + L"\\launches.txt";
    // Waits for its turn: under Wine two programs that append at once write to the same place.
    pdx::FileHandle file;
    for (int tries = 0; !file && tries < 500; ++tries) {
        if (tries > 0) Sleep(10);
        file = pdx::FileHandle(CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                                           FILE_ATTRIBUTE_NORMAL, nullptr));
    }
    const std::string line = pdx::toUtf8(text) + "\n";
    DWORD written = 0;
    return file && WriteFile(file.get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

}  // namespace client
