#include "bench/Benchmarks.h"
#include "bench/StartedLibrary.h"

namespace pdx {

namespace {

constexpr int startupRounds = 20;

double startSeconds(const std::filesystem::path& library) {
    StartedLibrary started(library);
    return secondsOf([&] { started.start(); });
}

}  // namespace

Measurements measureStartup(const std::filesystem::path& library) {
    const double first = startSeconds(library);
    std::vector<double> seconds;
    for (int round = 0; round < startupRounds; ++round) seconds.push_back(startSeconds(library));
    return {
        {"startup_first", first * 1000, "ms", "creation to the return of OnStartup, first load"},
        {"startup", median(seconds) * 1000, "ms", "creation to the return of OnStartup, median"},
    };
}

}  // namespace pdx
