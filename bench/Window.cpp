#include <windows.h>

#include "bench/Benchmarks.h"
#include "bench/ProcessMemory.h"
#include "bench/StartedLibrary.h"
#include "ui/dialog/AppMessages.h"

namespace pdx {

namespace {

constexpr int startRounds = 9;
constexpr int repaintRounds = 100;
constexpr DWORD marqueeMs = 5000;
/// Percent of a core.
constexpr double marqueeAim = 5;

/// Seconds from the call of OnStartup to the first paint of the welcome page.
double showWelcomePage(StartedLibrary& started) {
    started.create();
    return secondsOf([&] {
        started.startUp();
        started.application().OnDetectComplete(S_OK);
        paint(findDialog());
    });
}

/// The processor time of this process in seconds.
double processorSeconds() {
    FILETIME unused{}, kernel{}, user{};
    GetProcessTimes(GetCurrentProcess(), &unused, &unused, &kernel, &user);
    const auto seconds = [](const FILETIME& time) {
        return static_cast<double>(ULARGE_INTEGER{{time.dwLowDateTime, time.dwHighDateTime}}.QuadPart) / 1e7;
    };
    return seconds(kernel) + seconds(user);
}

/// The share of a core, in percent, that the window takes without input.
double idleShare() {
    const double before = processorSeconds();
    const double elapsed = secondsOf([] { Sleep(marqueeMs); });
    return std::max(0.0, processorSeconds() - before) / elapsed * 100;
}

}  // namespace

Measurements measureWindow(const std::filesystem::path& library) {
    const size_t without = processMemory().workingSet;
    StartedLibrary started(library, BOOTSTRAPPER_DISPLAY_FULL);
    const double first = showWelcomePage(started);
    const HWND dialog = findDialog();
    const size_t with = processMemory().workingSet;
    const auto repaint = [&] { paint(dialog, RDW_INVALIDATE | RDW_ERASE); };
    const double repaintSeconds = medianSeconds(repaintRounds, repaint);
    const double still = idleShare();
    SendMessageW(dialog, WM_BA_DETECT_UPDATE_BEGIN, 0, 0);
    paint(dialog);
    const double marquee = idleShare();
    started.end();

    const double later = medianOf(startRounds, [&] {
        StartedLibrary again(library, BOOTSTRAPPER_DISPLAY_FULL);
        return showWelcomePage(again);
    });
    return {
        {"welcome_first", first * 1000, "ms", "OnStartup to the painted welcome page, first load"},
        {"welcome", later * 1000, "ms", "OnStartup to the painted welcome page, median"},
        {"welcome_working_set", mebibytes(with), "MiB", "working set on the welcome page"},
        {"welcome_working_set_growth", mebibytes(with) - mebibytes(without), "MiB",
         "working set taken from the library's load to the welcome page"},
        {"repaint", repaintSeconds * 1000, "ms", "repaint of the welcome page with all its controls, median"},
        {"repaints_per_second", 1 / repaintSeconds, "1/s", "repaints a second"},
        {"still_share", still, "% of a core", "the welcome page at rest"},
        {"marquee_share", marquee, "% of a core", "the moving bar", atMost(marqueeAim)},
    };
}

}  // namespace pdx
