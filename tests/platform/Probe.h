// Starting the program of harness/programs/Probe.cpp, which documents its arguments.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/Handles.h"
#include "platform/Paths.h"
#include "tests/platform/TestFolder.h"

namespace pdx {

inline std::wstring probePath() { return getModuleFilePath(L"harness\\probe.exe"); }

inline std::wstring copyProbe(const TestFolder& folder, const std::wstring& name) {
    std::filesystem::copy_file(probePath(), folder.path(name));
    return folder.path(name);
}

/// A running copy; program is the probe or a copy of its file.
inline Handle startProbe(const std::wstring& arguments, const std::wstring& program = probePath()) {
    std::wstring commandLine = L"\"" + program + L"\" " + arguments;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    EXPECT_TRUE(CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                               &startup, &started));
    const Handle thread(started.hThread);
    return Handle(started.hProcess);
}

/// The exit code, once the process has ended.
inline DWORD waitFor(const Handle& process) {
    // A bound for a hang, far above what the machine needs.
    EXPECT_EQ(WaitForSingleObject(process.get(), 60'000), WAIT_OBJECT_0);
    DWORD exitCode = STILL_ACTIVE;
    GetExitCodeProcess(process.get(), &exitCode);
    return exitCode;
}

}  // namespace pdx
