// Loads the library as the engine does, runs it, destroys and frees it, over and over in one process, and counts what
// is left: lifecycle_driver.exe path\to\PalisadeBootstrapper.dll [rounds, 100]. Every tenth round is a reload. Ends
// with code 0 if everything held, else 1. The program's folder needs a stray.dll (LibraryRound.h).
#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "harness/programs/lifecycle/LibraryRound.h"
#include "harness/programs/lifecycle/ProcessCensus.h"

namespace {

namespace fs = std::filesystem;

constexpr int reloadEvery = 10;
/// In them the system's libraries make what they keep for the life of the process: window classes, COM's threads.
constexpr int warmUpRounds = 10;
constexpr DWORD settleBound = 5000;  // milliseconds

pdx::RoundKind kindOf(int round) {
    using enum pdx::RoundKind;
    if (round % reloadEvery == 0) return reload;
    constexpr pdx::RoundKind ordinary[] = {install, uninstall, download, packageFails, secondInstance};
    return ordinary[round % std::size(ordinary)];
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
        const auto name = (kind == pdx::RoundKind::reload ? "reload-" : "round-") + std::to_string(round);
        auto findings = runRound(kind, library, fs::temp_directory_path() / name);
        allowFor(kind, baseline);
        const auto census = round > warmUp ? pdx::takeCensusWithin(baseline, settleBound) : pdx::takeCensus();
        if (round > warmUp && !census.within(baseline))
            findings.insert(findings.begin(), "left over: " + census.excessOver(baseline));
        // After a finding the next rounds are held to what is there now, so that each reports its own only.
        if (round <= warmUp || !findings.empty()) baseline = census;
        std::printf("%s\n", findings.empty() ? "ok" : "FAILED");
        for (const auto& line : findings) std::printf("  %s\n", line.c_str());
        failures += !findings.empty();
    }
    const auto census = pdx::takeCensus();
    std::printf("%d rounds: %s; at the end %zu handles of %zu allowed, %zu threads of %zu\n", rounds,
                failures == 0 ? "all held" : "FAILED", census.handleCount(), baseline.handleCount(), census.threads,
                baseline.threads);
    CoUninitialize();
    return failures == 0 ? 0 : 1;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    try {
        const int rounds = argc > 2 ? std::stoi(argv[2]) : 100;
        if (argc > 1 && rounds > 0) return runRounds(fs::absolute(argv[1]), rounds);
        std::printf("usage: lifecycle_driver.exe path\\to\\PalisadeBootstrapper.dll [rounds]\n");
    } catch (const std::exception& error) {
        std::printf("FAILED: %s\n", error.what());
    }
    return 1;
}
