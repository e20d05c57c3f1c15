// Runs the library with one fault after another: faults_driver.exe path\to\PalisadeBootstrapper.dll ROWS FIRST.
// A row of the file is "KIND|FUNCTION|CALL|SLOW"; FIRST is the first to run, from 0. For each row a line
// "row|NUMBER|VERDICT|HOW IT ENDED|INJECTED" is printed, the verdict being "ok" or what did not hold; a row without a
// function prints "count|KIND|FUNCTION|CALLS" for each function that was called. A crash or a hang ends the process.
#include <windows.h>

#include <objbase.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

#include "harness/programs/engine/EngineRun.h"
#include "harness/programs/engine/LoadedLibrary.h"
#include "harness/programs/faults/FaultyEngine.h"
#include "harness/programs/faults/RegistryState.h"
#include "harness/programs/lifecycle/ProcessCensus.h"
#include "platform/Text.h"
#include "platform/Thread.h"

namespace {

namespace fs = std::filesystem;
using namespace pdx;

constexpr UINT crashCode = 5;        // of a row that ended in a crash, see harness/faults.py
constexpr DWORD idleBound = 25000;   // milliseconds
constexpr DWORD hangBound = 60000;   // milliseconds
constexpr DWORD settleBound = 3000;  // milliseconds
constexpr auto packageFailure = static_cast<HRESULT>(0x80070643);

struct Row {
    std::string kind;
    Injection injection;
};

std::vector<Row> readRows(const wchar_t* file) {
    std::vector<Row> rows;
    std::ifstream stream{fs::path(file)};
    for (std::string line; std::getline(stream, line);) {
        std::istringstream fields(line);
        std::string kind, function, call, slow;
        std::getline(fields, kind, '|') && std::getline(fields, function, '|') && std::getline(fields, call, '|');
        std::getline(fields, slow);
        rows.push_back({kind, {function, static_cast<unsigned>(std::stoul(call)), slow.starts_with('1')}});
    }
    return rows;
}

void presetVariables(SmallEngine& engine, const fs::path& folder, const std::string& kind) {
    const std::pair<const wchar_t*, std::wstring> presets[] = {
        {L"PDX_REPAIR", kind == "repair" ? L"1" : L"0"},
        {L"PDX_MERIDIAN_MODE", L"0"},
        {L"PDX_SUBMIT_ERROR_REPORT", kind == "report" ? L"1" : L"0"},
        {L"IsThickInstaller", L"yes"},
        {L"ProgramFiles64Folder", L"C:\\Program Files\\"},
        {L"InstallFolder", L"[ProgramFiles64Folder]Palisade"},
        {L"BundleExecutableName", L"faults.exe"},
        {L"WixBundleProviderKey", bundleKey},
        {L"WixBundleLog", (folder / L"bundle.log").wstring()},
        {L"WixBundleLog_PalisadeApp.msi", (folder / L"package.log").wstring()},
        {L"WixBundleRollbackLog_PalisadeApp.msi", (folder / L"package_rollback.log").wstring()},
    };
    for (const auto& [name, value] : presets) engine.variables.set(name, value);
    std::ofstream(folder / L"bundle.log") << "the engine's log\n";
}

unsigned __stdcall takeMutex(void* mutex) { return WaitForSingleObject(mutex, 0); }

/// A mutex that is there, and whose owner ended without letting go of it.
Handle abandonMutex(const wchar_t* name) {
    Handle mutex(CreateMutexW(nullptr, FALSE, name));
    Thread owner;
    owner.start(takeMutex, mutex.get());
    owner.join();
    return mutex;
}

/// A fault that is no call's: false if it is none of these.
bool arrange(std::string_view fault, SmallEngine& engine, Handle& mutex) {
    const std::wstring missing = (fs::temp_directory_path() / L"missing").wstring();
    if (fault == "state: installer's mutex abandoned") {
        mutex = abandonMutex(L"Global\\Palisade_Desktop_Installer");
    } else if (fault == "state: log folder missing") {
        for (const wchar_t* log : {L"WixBundleLog", L"WixBundleLog_PalisadeApp.msi"})
            engine.variables.set(log, missing + L"\\file.log");
    } else if (fault == "state: no variable set") {
        engine.variables.erase(L"InstallFolder");
        for (const wchar_t* name : {L"WixBundleLog", L"WixBundleLog_PalisadeApp.msi", L"BundleExecutableName"})
            engine.variables.erase(name);
    } else if (fault == "state: temporary folder missing") {
        SetEnvironmentVariableW(L"TMP", missing.c_str());
    } else {
        return false;
    }
    return true;
}

struct Ending {
    std::string text;
    std::string wrong;
    bool arranged = false;
    void expect(bool holds, const std::string& problem) {
        if (!holds) wrong += (wrong.empty() ? "" : "; ") + problem;
    }
};

std::string hex(DWORD value) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%08lx", value);
    return text;
}

/// No run may look as if its work had been done when it was not, nor end without a result.
void judge(const RunOutcome& outcome, bool packageFails, Ending& ending) {
    const bool applied = outcome.apply && SUCCEEDED(*outcome.apply);
    ending.text = "exit " + hex(outcome.exitCode) + (FAILED(outcome.startup) ? ", not started" : "") +
                  (outcome.apply ? ", apply " + hex(static_cast<DWORD>(*outcome.apply)) : ", nothing applied");
    ending.expect(outcome.failure.empty(), "hang: " + outcome.failure);
    ending.expect(outcome.exitCode != 0 || applied, "false success");
    ending.expect(!packageFails || !applied, "a failed package was applied");
    for (const auto& call : outcome.calls) ending.expect(call.returned, call.callback + " did not return");
}

Ending runRound(const Row& row, const fs::path& library, const fs::path& folder, ImportHook& hook) {
    Ending ending;
    const auto file = folder / L".ba" / L"PalisadeBootstrapper.dll";
    fs::create_directories(file.parent_path());
    fs::copy_file(library, file);
    FaultyEngine engine(hook);
    presetVariables(engine, folder, row.kind);
    SetEnvironmentVariableW(L"PDX_REPAIR", row.kind == "repair" ? L"1" : nullptr);

    const auto temporary = fs::temp_directory_path().wstring();
    Handle mutex;
    ending.arranged = arrange(row.injection.function, engine, mutex);

    BOOTSTRAPPER_COMMAND command{};
    command.restart = BOOTSTRAPPER_RESTART_NEVER;
    command.action = row.kind == "uninstall" ? BOOTSTRAPPER_ACTION_UNINSTALL : BOOTSTRAPPER_ACTION_INSTALL;
    command.display = row.kind == "install" ? BOOTSTRAPPER_DISPLAY_PASSIVE : BOOTSTRAPPER_DISPLAY_NONE;
    EngineScript script{.downloads = row.kind == "download",
                        .parallelCache = row.kind == "download",
                        .idleBound = idleBound,
                        .hangBound = hangBound};
    if (row.kind == "uninstall") script.package = BOOTSTRAPPER_PACKAGE_STATE_PRESENT;
    if (row.kind == "report") script.execute = packageFailure;
    {
        const LoadedLibrary loaded(file);
        hook.attach(GetModuleHandleW(file.c_str()));
        hook.arm(row.injection);
        IBootstrapperApplication* application = nullptr;
        const HRESULT created = loaded.create(&engine, &command, &application);
        if (SUCCEEDED(created)) {
            judge(EngineRun(engine, *application, script).run(), row.kind == "report", ending);
            ending.expect(application->Release() == 0, "the object outlives its last Release");
        } else {
            ending.text = "not created, " + hex(static_cast<DWORD>(created));
        }
        loaded.destroy();
        hook.disarm();
    }
    SetEnvironmentVariableW(L"TMP", temporary.c_str());
    ending.expect(engine.references() == 0, "the engine is still referenced");
    ending.expect(!GetModuleHandleW(file.c_str()), "the library is still loaded");
    std::error_code error;
    fs::remove_all(folder, error);
    ending.expect(!fs::exists(folder), "files are still held");
    const auto line = engine.findLog(L"Error 0x");
    if (line) ending.text += ", log: " + toUtf8(line->text);
    std::ranges::replace(ending.text, '\n', ' ');
    return ending;
}

/// A temporary file that a run leaves behind is its fault, whatever failed.
size_t temporaryFiles() {
    size_t count = 0;
    for (const auto& entry : fs::directory_iterator(fs::temp_directory_path())) count += entry.exists();
    return count;
}

/// A run on a machine that is as before each run of that kind. The first of a kind has no fault and fills `good`.
Ending runArranged(const Row& row, const fs::path& library, const fs::path& folder, ImportHook& hook,
                   RegistryState& good) {
    const bool repairs = row.kind == "repair";
    AllowedStates allowed{.before = arrangeMachine(repairs || row.kind == "uninstall"),
                          .good = {},
                          .firstSteps = repairs                   ? FirstSteps::ofRepair
                                        : row.kind == "uninstall" ? FirstSteps::ofUninstall
                                                                  : FirstSteps::none,
                          // Without its key the bundle's own entry is not known from the client's other records.
                          .registryFails = row.injection.function.starts_with("Reg") ||
                                           row.injection.function == "engine: GetVariableString"};
    auto ending = runRound(row, library, folder, hook);
    const RegistryState after = readMachine();
    if (good.is_null()) good = after;
    allowed.good = good;
    const std::string wrong = halfWritten(allowed, after);
    ending.expect(wrong.empty(), "half-written registry: " + wrong);
    std::ranges::replace(ending.wrong, '|', '/');
    return ending;
}

void runRows(const fs::path& library, const std::vector<Row>& rows, size_t first) {
    ProcessCensus baseline;
    std::map<std::string, RegistryState> good;
    for (size_t i = first; i < rows.size(); ++i) {
        const Row& row = rows[i];
        const auto folder = fs::temp_directory_path() / ("fault-" + std::to_string(i));
        // The first run of a kind makes what the system's libraries keep for the life of the process.
        if (!good.contains(row.kind)) {
            ImportHook plain;
            runArranged({row.kind, {}}, library, folder, plain, good[row.kind]);
            baseline = takeCensus();
        }
        // Wine keeps a handle for each access below HKEY_CLASSES_ROOT that names a view, and a repair makes as many. A
        // run that cannot read its variables counts as one.
        const bool repairs = row.kind == "repair" || row.injection.function == "engine: GetVariableString";
        if (repairs) baseline.handles["Key"] += 17;
        const size_t files = temporaryFiles();
        ImportHook hook;
        auto ending = runArranged(row, library, folder, hook, good[row.kind]);
        auto census = takeCensusWithin(baseline, settleBound);
        // What a second run with the same fault does not leave again is the system's.
        if (ending.wrong.empty() && !census.within(baseline)) {
            baseline = census;
            ImportHook again;
            runArranged(row, library, folder, again, good[row.kind]);
            if (repairs) baseline.handles["Key"] += 17;
            // A condition variable of the toolchain, made for the first exception after a load and never closed.
            baseline.handles["Semaphore"] += 2;
            census = takeCensusWithin(baseline, settleBound);
            ending.expect(census.within(baseline), "left over: " + census.excessOver(baseline));
        }
        if (!census.within(baseline)) baseline = census;
        ending.expect(temporaryFiles() <= files, "temporary files are left");
        if (row.injection.function.empty())
            for (const auto& [name, calls] : hook.counts())
                std::printf("count|%s|%s|%u\n", row.kind.c_str(), name.c_str(), calls);
        std::printf("row|%zu|%s|%s|%u\n", i, ending.wrong.empty() ? "ok" : ending.wrong.c_str(), ending.text.c_str(),
                    hook.injected() + ending.arranged);
        std::fflush(stdout);
    }
}

}  // namespace

/// In the place of a message box: of all that the library shows none but the crash's box is one, and nobody is there to
/// close it.
int WINAPI endAsCrash(HWND, LPCWSTR, LPCWSTR, UINT) {
    TerminateProcess(GetCurrentProcess(), crashCode);
    return 0;
}

void replaceMessageBox() {
    // Not the address of this program's import, which only leads there.
    auto* const entry =
        reinterpret_cast<unsigned char*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "MessageBoxW"));
    DWORD before = 0;
    if (!VirtualProtect(entry, 5, PAGE_EXECUTE_READWRITE, &before)) throw std::runtime_error("the box stays");
    const auto distance = reinterpret_cast<intptr_t>(&endAsCrash) - reinterpret_cast<intptr_t>(entry + 5);
    entry[0] = 0xE9;  // a jump
    std::memcpy(entry + 1, &distance, 4);
}

int wmain(int argc, wchar_t** argv) {
    if (argc != 4) return std::printf("usage: faults_driver.exe LIBRARY ROWS FIRST\n");
    try {
        replaceMessageBox();
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        runRows(fs::absolute(argv[1]), readRows(argv[2]), std::stoul(argv[3]));
        CoUninitialize();
        return 0;
    } catch (const std::exception& error) {
        std::printf("FAILED: %s\n", error.what());
        return 1;
    }
}
