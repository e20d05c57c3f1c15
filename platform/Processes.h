// The rights and arguments of this process, other processes, and starting programs.
#pragma once

#include <windows.h>
// tlhelp32.h needs the types of windows.h.
#include <tlhelp32.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Handles.h"

namespace pdx {

/// Whether this process runs elevated; false when its token cannot be read.
bool isElevated();

/// The arguments of this process after the program, as the system splits them.
std::vector<std::wstring> processArguments();

/// The processes that ran when the snapshot was made.
class ProcessSnapshot {
  public:
    ProcessSnapshot();
    /// Fills the entry with the next process; false after the last one, or if there is no snapshot.
    bool next(PROCESSENTRY32W& entry);

  private:
    FileHandle snapshot;
    bool begun = false;
};

/// How a program is started.
struct ProgramStart {
    std::wstring verb = L"open";  ///< "runas" to elevate
    std::wstring file;
    std::wstring parameters = {};
    std::wstring folder = {};  ///< current folder; empty for that of this process
    int show = SW_SHOW;
};

/// Starts a program through the shell, or without it if this process is elevated. Returns the handle of the new
/// process, null if there is none. Logs nothing.
Handle startProgram(const ProgramStart& program);

/// The same by the shell, whatever the rights. The shell asks the user's classes how to open a program.
Handle startByShell(const ProgramStart& program);

/// Ends every process whose program has one of the names, compared without regard to case, with exit code 9. Waits
/// until all of them have ended, without a time limit. Logs "Terminating %ls" at INFO for each. A process that cannot
/// be opened is left running.
void terminateProcesses(std::span<const std::wstring_view> names);

/// Waits until all handles are signalled, also more than the system's 64. False at once if one cannot be waited for.
bool waitForAll(std::span<const HANDLE> handles);

}  // namespace pdx
