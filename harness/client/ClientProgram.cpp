// A program of the sample client. It appends its command line to C:\PalisadeTest\launches.txt, one UTF-8 line a
// start, and ends; with "--stay" it runs on until somebody ends it.
#include <string>

#include "platform/Handles.h"
#include "platform/Text.h"

namespace {

constexpr wchar_t exchangeFolder[] = L"C:\\PalisadeTest";

bool noteCommandLine() {
    CreateDirectoryW(exchangeFolder, nullptr);
    const pdx::FileHandle file(CreateFileW((std::wstring(exchangeFolder) + L"\\launches.txt").c_str(), FILE_APPEND_DATA,
                                           FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                                           FILE_ATTRIBUTE_NORMAL, nullptr));
    const std::string line = pdx::toUtf8(GetCommandLineW()) + "\n";
    DWORD written = 0;
    return file && WriteFile(file.get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    if (!noteCommandLine()) return 1;
    if (std::wstring(GetCommandLineW()).find(L"--stay") != std::wstring::npos) Sleep(INFINITE);
    return 0;
}
