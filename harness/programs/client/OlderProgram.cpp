// The programs of the sample older client. They note what they do in the file that the client's programs use.
//
//   Bastion.exe                      runs until it is asked to end; "--deaf" does not listen
//   Bastion.exe bastion://quit       asks the one that runs, and waits until it has ended
//   BastionUninstall.exe /Silent     leaves the work to a copy of itself in the temporary folder, and ends
//   ... --conduct ID                 that copy: when the process has ended it starts what plan.txt names
//   ... --finish TIME, --stay TIME   temporary uninstallers: take their time; the first kind then removes the client
//
// A line of plan.txt in the exchange folder is "KIND GAP NAME PROGRAM TIME". The KIND is finish, whose end the next
// line waits for, or stay. The GAP before the start is in milliseconds, NAME is what the copy of the PROGRAM is called,
// the TIME is in milliseconds or the name of a file in the exchange folder that is waited for. A line "work GAP - - -"
// is the time that the uninstaller itself takes.
#include <windows.h>

#include <shellapi.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include "harness/programs/client/Launches.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "platform/Registry.h"

namespace {

namespace fs = std::filesystem;

constexpr wchar_t quitEvent[] = L"Local\\BastionQuits";
constexpr wchar_t runsMutex[] = L"Local\\BastionRuns";
constexpr wchar_t olderKey[] = L"Software\\Bastion";

const fs::path exchange = client::exchangeFolder;

fs::path ownFile() { return pdx::getProcessFilePath(); }

int run(bool deaf) {
    const pdx::Handle quits(CreateEventW(nullptr, TRUE, FALSE, quitEvent));
    const pdx::Handle runs(CreateMutexW(nullptr, TRUE, runsMutex));
    client::note(L"Bastion runs");
    if (deaf) Sleep(INFINITE);
    WaitForSingleObject(quits.get(), INFINITE);
    client::note(L"Bastion quits");
    return 0;
}

int askToQuit() {
    const pdx::Handle quits(OpenEventW(EVENT_MODIFY_STATE, FALSE, quitEvent));
    const pdx::Handle runs(OpenMutexW(SYNCHRONIZE, FALSE, runsMutex));
    if (quits) SetEvent(quits.get());
    if (runs) WaitForSingleObject(runs.get(), INFINITE);
    return 0;
}

struct Stage {
    std::string kind;
    DWORD gap = 0;
    std::string name, program, time;
};

std::vector<Stage> plan() {
    std::vector<Stage> stages;
    std::ifstream file(exchange / "plan.txt");
    for (Stage stage; file >> stage.kind >> stage.gap >> stage.name >> stage.program >> stage.time;)
        stages.push_back(stage);
    return stages;
}

pdx::Handle start(const fs::path& program, const std::wstring& parameters) {
    return pdx::startProgram({.file = program.wstring(), .parameters = parameters});
}

/// The library's own copying does not write over files with this toolchain.
void copyToTemporary(const fs::path& program, const fs::path& name) {
    CopyFileW(program.c_str(), (fs::temp_directory_path() / name).c_str(), FALSE);
}

int leaveTheWork() {
    copyToTemporary(ownFile(), "conductor.exe");
    // Their files go while they are waited for.
    for (const Stage& stage : plan())
        stage.kind == "work" ? Sleep(stage.gap) : copyToTemporary(ownFile().parent_path() / stage.program, stage.name);
    start(fs::temp_directory_path() / "conductor.exe", L"--conduct " + std::to_wstring(GetCurrentProcessId()));
    return 0;
}

int conduct(DWORD uninstaller) {
    const pdx::Handle before(OpenProcess(SYNCHRONIZE, FALSE, uninstaller));
    if (before) WaitForSingleObject(before.get(), INFINITE);
    for (const Stage& stage : plan()) {
        if (stage.kind == "work") continue;
        Sleep(stage.gap);
        const pdx::Handle process =
            start(fs::temp_directory_path() / stage.name, pdx::toWide("--" + stage.kind + " " + stage.time));
        if (stage.kind == "finish") WaitForSingleObject(process.get(), INFINITE);
    }
    return 0;
}

void takeTime(const std::wstring& time) {
    if (time.find_first_not_of(L"0123456789") == std::wstring::npos) return Sleep(std::stoul(time));
    while (!fs::exists(exchange / time)) Sleep(50);
}

/// Removes the client, and leaves what a newer client has written under its key.
void remove() {
    pdx::RegistryKey key = pdx::RegistryKey::localMachine(pdx::view32).openSubKey(olderKey, true);
    const std::wstring program = pdx::toText(key.getValue(L"BastionPath"));
    if (!program.empty()) fs::remove_all(fs::path(program).parent_path());
    for (const wchar_t* value : {L"BastionPath", L"InstallSuccesfull"}) key.deleteValue(value);
}

int uninstall(const std::wstring& kind, const std::wstring& time) {
    const std::wstring name = ownFile().filename().wstring();
    client::note(name + L" begins");
    takeTime(time);
    if (kind == L"--finish") remove();
    client::note(name + L" ends");
    return 0;
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    std::vector<std::wstring> arguments = pdx::processArguments();
    arguments.resize(2);
    const std::wstring& first = arguments[0];
    if (first == L"--conduct") return conduct(std::stoul(arguments[1]));
    if (first == L"--finish" || first == L"--stay") return uninstall(first, arguments[1]);
    if (first == L"" || first == L"--deaf") return run(first == L"--deaf");
    client::note(GetCommandLineW());
    if (first == L"bastion://quit") return askToQuit();
    return first == L"/Silent" ? leaveTheWork() : 1;
}
