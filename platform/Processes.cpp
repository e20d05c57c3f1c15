#include "platform/Processes.h"

#include <shellapi.h>

#include <algorithm>
#include <set>

#include "platform/IoBound.h"
#include "platform/Log.h"
#include "platform/Text.h"

namespace pdx {
namespace {

constexpr UINT terminatedExitCode = 9;

/// Not by the shell, which asks the user's classes how to open a program, even in an elevated process. Any program of
/// the user can write these classes.
Handle createProcess(const ProgramStart& program) {
    std::wstring commandLine = L'"' + program.file + L"\" " + program.parameters;
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESHOWWINDOW;
    start.wShowWindow = static_cast<WORD>(program.show);
    PROCESS_INFORMATION created{};
    const IoBound bound;
    const wchar_t* const folder = program.folder.empty() ? nullptr : program.folder.c_str();
    if (!CreateProcessW(program.file.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, folder, &start,
                        &created))
        return Handle();
    const Handle thread(created.hThread);
    return Handle(created.hProcess);
}

}  // namespace

bool isElevated() {
    Handle token;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.put())) return false;
    TOKEN_ELEVATION elevation{};
    DWORD size = 0;
    return GetTokenInformation(token.get(), TokenElevation, &elevation, sizeof elevation, &size) &&
           elevation.TokenIsElevated;
}

std::vector<std::wstring> processArguments() {
    int count = 0;
    const UniqueHandle<LocalMemoryTraits<LPWSTR>> all(CommandLineToArgvW(GetCommandLineW(), &count));
    if (!all || count < 1) return {};
    return {all.get() + 1, all.get() + count};
}

ProcessSnapshot::ProcessSnapshot() : snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0)) {}

bool ProcessSnapshot::next(PROCESSENTRY32W& entry) {
    if (!snapshot) return false;
    entry.dwSize = sizeof entry;
    return std::exchange(begun, true) ? Process32NextW(snapshot.get(), &entry)
                                      : Process32FirstW(snapshot.get(), &entry);
}

Handle startProgram(const ProgramStart& program) {
    // The shell would open a folder for an empty name.
    if (program.file.empty()) return Handle();
    return isElevated() ? createProcess(program) : startByShell(program);
}

Handle startByShell(const ProgramStart& program) {
    SHELLEXECUTEINFOW start{};
    start.cbSize = sizeof start;
    start.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_NOASYNC | SEE_MASK_NO_CONSOLE;
    start.lpVerb = program.verb.c_str();
    start.lpFile = program.file.c_str();
    start.lpParameters = program.parameters.c_str();
    start.lpDirectory = program.folder.c_str();
    start.nShow = program.show;
    ShellExecuteExW(&start);
    return Handle(start.hProcess);
}

bool waitForAll(std::span<const HANDLE> handles) {
    while (!handles.empty()) {
        const size_t count = std::min<size_t>(handles.size(), MAXIMUM_WAIT_OBJECTS);
        if (WaitForMultipleObjects(static_cast<DWORD>(count), handles.data(), TRUE, INFINITE) == WAIT_FAILED)
            return false;
        handles = handles.subspan(count);
    }
    return true;
}

void terminateProcesses(std::span<const std::wstring_view> names) {
    std::set<std::wstring> wanted;
    for (const std::wstring_view name : names) wanted.insert(toLower(std::wstring(name)));
    std::vector<Handle> owners;
    std::vector<HANDLE> ending;
    ProcessSnapshot snapshot;
    for (PROCESSENTRY32W entry; snapshot.next(entry);) {
        if (!wanted.contains(toLower(entry.szExeFile))) continue;
        Handle process(OpenProcess(PROCESS_TERMINATE, FALSE, entry.th32ProcessID));
        if (!process) continue;
        PDX_LOG(logInfo, "terminateProcesses", "Terminating %ls", entry.szExeFile);
        // May fail for a process that is ending; its end is awaited too, because its files are open until then.
        TerminateProcess(process.get(), terminatedExitCode);
        // Another handle, because the right to end a process is not the right to wait. The first keeps the id reserved.
        Handle waitable(OpenProcess(SYNCHRONIZE, FALSE, entry.th32ProcessID));
        if (waitable) ending.push_back(waitable.get());
        owners.push_back(std::move(process));
        owners.push_back(std::move(waitable));
    }
    waitForAll(ending);
}

}  // namespace pdx
