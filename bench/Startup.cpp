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
    const double later = medianOf(startupRounds, [&] { return startSeconds(library); });
    return {
        {"startup_first", first * 1000, "ms", "creation to the return of OnStartup, first load"},
        {"startup", later * 1000, "ms", "creation to the return of OnStartup, median"},
    };
}

}  // namespace pdx
