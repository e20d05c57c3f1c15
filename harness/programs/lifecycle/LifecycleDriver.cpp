// Loads the library as the engine does, runs it, destroys and frees it, over and over in one process, and counts what
// is left: lifecycle_driver.exe path\to\PalisadeBootstrapper.dll [rounds, 100]. Every tenth round is a reload. Ends
// with code 0 if everything held, else 1.
#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "harness/programs/lifecycle/LibraryRound.h"
#include "harness/programs/lifecycle/ProcessCensus.h"
#include "platform/Handles.h"

namespace {

namespace fs = std::filesystem;

constexpr const wchar_t* innerSwitch = L"--inner";
constexpr const wchar_t* programFolder = L"program";
constexpr int reloadEvery = 10;
/// Before it the system's libraries make what they keep for the life of the process: window classes, COM's threads.
constexpr int warmUpRounds = 10;
constexpr DWORD settleBound = 5000;
/// A round takes well under a second.
constexpr DWORD roundBound = 5000;
constexpr DWORD startBound = 60000;

pdx::RoundKind kindOf(int round) {
    using enum pdx::RoundKind;
    if (round % reloadEvery == 0) return reload;
    constexpr pdx::RoundKind ordinary[] = {install, uninstall, download, packageFails, secondInstance};
    return ordinary[round % std::size(ordinary)];
}

std::wstring folderName(int round) {
    return std::wstring(kindOf(round) == pdx::RoundKind::reload ? L"reload-" : L"round-") + std::to_wstring(round);
}

/// What a round may add to the handles for the life of the process, none of it the library's.
void allowFor(pdx::RoundKind kind, pdx::ProcessCensus& baseline) {
    if (kind != pdx::RoundKind::reload) return;
    // A library that stays mapped keeps what the toolchain's thread layer in it holds of this thread.
    ++baseline.handles["Event"];
    ++baseline.handles["Thread"];
    // Wine keeps a handle for each access below HKEY_CLASSES_ROOT that names a view, and a repair makes as many.
    baseline.handles["Key"] += 13;
}

/// The process that loads the library.
int runRounds(const fs::path& library, int rounds) {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    if (!pdx::findsStrayLibrary()) throw std::runtime_error("the stray library is not found from the first");
    int failures = 0;
    pdx::ProcessCensus baseline;
    const int warmUp = std::min(warmUpRounds, rounds / 2);
    for (int round = 1; round <= rounds; ++round) {
        const auto kind = kindOf(round);
        std::printf("round %3d, %s: ", round, nameOf(kind));
        std::fflush(stdout);
        auto findings = runRound(kind, library, fs::temp_directory_path() / folderName(round));
        allowFor(kind, baseline);
        const auto census = round > warmUp ? pdx::takeCensusWithin(baseline, settleBound) : pdx::takeCensus();
        if (round > warmUp && !census.within(baseline))
            findings.insert(findings.begin(), "left over: " + census.excessOver(baseline));
        // After a finding the next rounds are held to what is there now, so that each tells of its own only.
        if (round <= warmUp || !findings.empty()) baseline = census;
        std::printf("%s\n", findings.empty() ? "ok" : "FAILED");
        for (const auto& line : findings) std::printf("  %s\n", line.c_str());
        failures += !findings.empty();
    }
    const auto census = pdx::takeCensus();
    std::printf("at the end %zu handles of %zu allowed, %zu threads of %zu\n", census.handleCount(),
                baseline.handleCount(), census.threads, baseline.threads);
    CoUninitialize();
    return failures == 0 ? 0 : 1;
}

/// Everything but the pinned libraries of the reloads: "round-7\.ba" and the like.
std::vector<fs::path> leftOver(const fs::path& folder, int rounds) {
    std::vector<fs::path> found;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        const auto relative = fs::relative(entry.path(), folder);
        bool expected = false;
        for (int round = reloadEvery; round <= rounds; round += reloadEvery) {
            const fs::path pinned = fs::path(folderName(round)) / L".ba" / L"PalisadeBootstrapper.dll";
            expected |= pinned.native().starts_with(relative.native());
        }
        if (!expected) found.push_back(relative);
    }
    return found;
}

/// Runs the inner process, a copy of this one, with this temporary folder; its exit code, or 1 after the bound.
int runInner(const fs::path& library, int rounds, const fs::path& folder) {
    wchar_t self[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    const auto program = folder / programFolder / L"driver.exe";
    fs::create_directories(program.parent_path());
    fs::copy_file(self, program);
    fs::copy_file(library, program.parent_path() / pdx::strayLibrary);
    auto commandLine = L"\"" + program.wstring() + L"\" " + innerSwitch + L" \"" + library.wstring() + L"\" " +
                       std::to_wstring(rounds);
    SetEnvironmentVariableW(L"TEMP", folder.c_str());
    SetEnvironmentVariableW(L"TMP", folder.c_str());
    SetEnvironmentVariableW(L"PDX_REPAIR", nullptr);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION information{};
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                        &information)) {
        std::printf("the inner process cannot be started: %lu\n", GetLastError());
        return 1;
    }
    const pdx::Handle process(information.hProcess);
    const pdx::Handle thread(information.hThread);
    const DWORD bound = startBound + static_cast<DWORD>(rounds) * roundBound;
    if (WaitForSingleObject(process.get(), bound) == WAIT_TIMEOUT) {
        std::printf("\nhangs: not ended after %lu seconds\n", bound / 1000);
        TerminateProcess(process.get(), 1);
        WaitForSingleObject(process.get(), settleBound);
        return 1;
    }
    DWORD exitCode = 1;
    GetExitCodeProcess(process.get(), &exitCode);
    // The rounds end with 0 or 1; anything else is a crash, or a hang that the round itself noticed.
    if (exitCode > 1) std::printf("\nthe inner process ended with %08lx\n", exitCode);
    return exitCode == 0 ? 0 : 1;
}

int runOuter(const fs::path& library, int rounds) {
    const auto folder = fs::temp_directory_path() / (L"lifecycle-" + std::to_wstring(GetCurrentProcessId()));
    fs::create_directories(folder);
    int result = runInner(library, rounds, folder);
    fs::remove_all(folder / programFolder);
    for (const auto& path : leftOver(folder, rounds)) {
        std::printf("left in the temporary folder: %ls\n", path.c_str());
        result = 1;
    }
    std::error_code error;
    fs::remove_all(folder, error);
    std::printf("%d rounds: %s\n", rounds, result == 0 ? "all held" : "FAILED");
    return result;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    try {
        const bool inner = argc > 1 && argv[1] == std::wstring(innerSwitch);
        const int first = inner ? 2 : 1;
        const int rounds = argc > first + 1 ? std::stoi(argv[first + 1]) : 100;
        if (argc <= first || rounds < 1) {
            std::printf("usage: lifecycle_driver.exe path\\to\\PalisadeBootstrapper.dll [rounds]\n");
            return 1;
        }
        const auto library = fs::absolute(argv[first]);
        return inner ? runRounds(library, rounds) : runOuter(library, rounds);
    } catch (const std::exception& error) {
        std::printf("FAILED: %s\n", error.what());
        return 1;
    }
}
