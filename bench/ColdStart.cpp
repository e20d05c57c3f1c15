// Cold starts: each round in a process of its own, like the engine's.
#include <windows.h>

#include <wincrypt.h>

#include <array>
#include <fstream>
#include <numeric>
#include <stdexcept>

#include "bench/Benchmarks.h"
#include "bench/ProcessMemory.h"
#include "bench/StartedLibrary.h"
#include "platform/Paths.h"
#include "platform/Text.h"

namespace pdx {

namespace {

constexpr int coldRounds = 9;
constexpr DWORD roundLimitMs = 60000;
constexpr double paintAim = 350;
constexpr double memoryAim = 60;

/// The moments of a start, in ms after the previous one, and the working set at the end in MiB.
enum Moment { loaded, constructed, uiEntered, dialogMade, laidOut, painted, workingSet, momentCount };
using Moments = std::array<double, momentCount>;

constexpr struct {
    const char* name;
    const char* meaning;
} momentTexts[] = {
    {"cold_load", "cold start: the library loaded"},
    {"cold_constructor", "cold start: BootstrapperApplicationCreate"},
    {"cold_ui_thread", "cold start: OnStartup up to the UI thread's first line"},
    {"cold_dialog", "cold start: from the UI thread's first line to the dialog, OnStartup over"},
    {"cold_page", "cold start: the welcome page laid out"},
    {"cold_paint", "cold start: the welcome page's first full paint"},
    {"cold_working_set", "cold start: working set on the welcome page"},
};
static_assert(std::size(momentTexts) == momentCount);

/// Milliseconds since its construction.
class Watch {
  public:
    [[nodiscard]] double now() const {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    }

  private:
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

/// Records when a line reaches the log.
class WatchedEngine : public SmallEngine {
  public:
    WatchedEngine(const Watch& clock, std::ostream* trace) : watch(clock), lines(trace) {}
    HRESULT STDMETHODCALLTYPE Log(BOOTSTRAPPER_LOG_LEVEL, LPCWSTR message) override {
        const double now = watch.now();
        const std::lock_guard guard(lock);
        if (std::wstring_view(message).ends_with(L"Entering UIThreadFunc")) entered = now;
        if (lines) *lines << now << " [" << GetCurrentThreadId() << "] " << toUtf8(message) << '\n';
        return S_OK;
    }
    [[nodiscard]] double uiThreadEntered() const { return entered; }

  private:
    const Watch& watch;
    std::ostream* lines;
    Lock lock;
    double entered = 0;
};

/// Makes a window, as the engine's process does before it loads the library; that loads the graphics driver.
void makeEngineWindow() {
    CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
}

/// Has Wine import the root certificates of the host, as it does once in a process that looks for a trusted root.
void importRoots() { CertCloseStore(CertOpenSystemStoreW(0, L"ROOT"), 0); }

Moments moments(const std::filesystem::path& file, std::ostream* trace, bool rootsBefore) {
    makeEngineWindow();
    if (rootsBefore) importRoots();
    const Watch watch;
    std::array<double, painted + 1> at{};
    auto watched = std::make_unique<WatchedEngine>(watch, trace);
    const WatchedEngine& engine = *watched;
    StartedLibrary started(file, BOOTSTRAPPER_DISPLAY_FULL, std::move(watched));
    at[loaded] = watch.now();
    started.create();
    at[constructed] = watch.now();
    started.startUp();
    at[uiEntered] = engine.uiThreadEntered();
    at[dialogMade] = watch.now();
    started.application().OnDetectComplete(S_OK);
    at[laidOut] = watch.now();
    paint(findDialog());
    at[painted] = watch.now();
    Moments found{};
    for (size_t i = 0; i <= painted; ++i) found[i] = at[i] - (i ? at[i - 1] : 0);
    found[workingSet] = mebibytes(processMemory().workingSet);
    return found;
}

/// The moments of a start in another process of this program.
Moments momentsOfProcess(const std::filesystem::path& library, const std::filesystem::path& result, bool rootsBefore) {
    const std::wstring program = getProcessFilePath();
    std::wstring command = L"\"" + program + L"\" cold \"" + library.wstring() + L"\" \"" + result.wstring() +
                           (rootsBefore ? L"\" roots" : L"\"");
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process))
        throw std::runtime_error("there is no process for a cold start");
    const Handle thread(process.hThread);
    const Handle handle(process.hProcess);
    if (WaitForSingleObject(handle.get(), roundLimitMs) != WAIT_OBJECT_0) TerminateProcess(handle.get(), 1);
    Moments found{};
    std::ifstream file(result);
    for (double& moment : found)
        if (!(file >> moment)) throw std::runtime_error("a cold start did not end");
    file.close();
    std::filesystem::remove(result);
    return found;
}

/// From BootstrapperApplicationCreate to the first full paint.
double afterLoad(const Moments& found) {
    return std::accumulate(found.begin() + constructed, found.begin() + workingSet, 0.0);
}

}  // namespace

void writeColdStart(const std::filesystem::path& library, const std::filesystem::path& result, std::wstring_view how) {
    std::ofstream file(result);
    for (const double moment : moments(library, how == L"log" ? &file : nullptr, how == L"roots"))
        file << moment << '\n';
}

Measurements measureColdStart(const std::filesystem::path& library, const std::filesystem::path& scratch) {
    std::array<std::vector<double>, momentCount> rounds;
    std::vector<double> whole, withRoots;
    for (int round = 0; round < coldRounds; ++round) {
        const Moments found = momentsOfProcess(library, scratch, false);
        for (size_t i = 0; i < momentCount; ++i) rounds[i].push_back(found[i]);
        whole.push_back(afterLoad(found));
        withRoots.push_back(afterLoad(momentsOfProcess(library, scratch, true)));
    }
    Measurements all;
    for (size_t i = 0; i <= painted; ++i)
        all.push_back({momentTexts[i].name, median(rounds[i]), "ms", momentTexts[i].meaning});
    all.push_back({"cold_start", median(whole), "ms", "cold start: all after the load", atMost(paintAim)});
    all.push_back({"cold_roots", median(whole) - median(withRoots), "ms",
                   "cold start: Wine's import of the host's root certificates"});
    all.push_back({momentTexts[workingSet].name, median(rounds[workingSet]), "MiB", momentTexts[workingSet].meaning,
                   atMost(memoryAim)});
    return all;
}

}  // namespace pdx
