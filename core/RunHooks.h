// What a run uses outside the engine, replaceable in tests.
#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "platform/Handles.h"
#include "platform/PathFunctions.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "reporting/ErrorReport.h"
#include "state/ElevatedBinaries.h"
#include "state/UpdateCheck.h"

namespace pdx {

/// Each is the real function unless a test replaces it.
struct RunHooks {
    /// The clock of the wait before a download's retry, and the pauses of that wait.
    std::function<std::chrono::milliseconds()> steadyTime = pdx::steadyTime;
    std::function<void(std::chrono::milliseconds)> pause = [](std::chrono::milliseconds time) {
        Sleep(static_cast<DWORD>(time.count()));
    };
    /// The address of the newer installer, if the update service names one. Waits for the service.
    std::function<std::optional<std::wstring>(const std::string& currentVersion)> newerInstaller = findNewerInstaller;
    std::function<bool()> isElevated = pdx::isElevated;
    std::function<std::wstring()> libraryFolder = [] { return removeFileSpec(getModuleFilePath(L"version.dll")); };
    std::function<bool(std::vector<FileHandle>& lockedFiles, const std::wstring& folder,
                       const std::wstring& executable)>
        lockElevated = ensureElevatedBinaries;
    /// Starts the elevated copy of this program.
    std::function<Handle(const ProgramStart& program)> startProgram = pdx::startProgram;
    /// Sends the report of a failed run and returns its id.
    std::function<std::string(const ReportFiles& files)> sendReport = sendErrorReport;
};

}  // namespace pdx
