// A start as the engine's process sees it: each round in a process of its own, in which nothing is warm.
#include <windows.h>

#include <wincrypt.h>

#include <array>
#include <fstream>
#include <numeric>
#include <sstream>
#include <stdexcept>

#include "bench/Benchmarks.h"
#include "bench/ProcessMemory.h"
#include "bench/Welcome.h"
#include "harness/programs/engine/LoadedLibrary.h"
#include "harness/programs/engine/SmallEngine.h"
#include "platform/Text.h"

namespace pdx {

namespace {

constexpr int coldRounds = 9;
constexpr DWORD roundLimitMs = 60000;
constexpr double paintAim = 350;
constexpr double memoryAim = 60;

/// The moments of a start, in ms behind the one before; the working set at its end in MiB.
enum Moment { loaded, constructed, uiEntered, dialogMade, laidOut, painted, workingSet, momentCount };
using Moments = std::array<double, momentCount>;

constexpr struct {
    const char* name;
    const char* meaning;
} momentTexts[] = {
    {"cold_load", "cold start: the library loaded"},
    {"cold_constructor", "cold start: BootstrapperApplicationCreate"},
    {"cold_ui_thread", "cold start: OnStartup up to the UI thread's first line"},
    {"cold_dialog", "cold start: from there to the dialog, OnStartup over"},
    {"cold_page", "cold start: the welcome page laid out"},
    {"cold_paint", "cold start: its first full paint"},
    {"cold_working_set", "cold start: working set on the welcome page"},
};
static_assert(std::size(momentTexts) == momentCount);

/// Milliseconds since its making.
class Watch {
  public:
    [[nodiscard]] double now() const {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    }

  private:
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

/// Notes when each line reaches the log.
class WatchedEngine : public SmallEngine {
  public:
    explicit WatchedEngine(const Watch& clock, std::ostream* trace) : watch(clock), lines(trace) {}
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

/// What the engine's process has before it loads the library: a window, and with it the graphics driver.
void makeEngineWindow() {
    CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
}

/// What Wine does once in each process that looks for a trusted root: it imports those of the host.
void importRoots() { CertCloseStore(CertOpenSystemStoreW(0, L"ROOT"), 0); }

Moments moments(const std::filesystem::path& file, std::ostream* trace, bool rootsBefore) {
    makeEngineWindow();
    if (rootsBefore) importRoots();
    const Watch watch;
    std::array<double, painted + 1> at{};
    const LoadedLibrary library(file);
    if (!library) throw std::runtime_error("the library cannot be loaded");
    at[loaded] = watch.now();
    WatchedEngine engine(watch, trace);
    for (const auto* mode : {L"PDX_REPAIR", L"PDX_MERIDIAN_MODE"}) engine.variables.set(mode, L"0");
    BOOTSTRAPPER_COMMAND command{};
    command.action = BOOTSTRAPPER_ACTION_INSTALL;
    command.display = BOOTSTRAPPER_DISPLAY_FULL;
    IBootstrapperApplication* application = nullptr;
    if (FAILED(library.create(&engine, &command, &application)))
        throw std::runtime_error("the library makes no application object");
    at[constructed] = watch.now();
    if (FAILED(application->OnStartup())) throw std::runtime_error("the library does not start");
    at[uiEntered] = engine.uiThreadEntered();
    at[dialogMade] = watch.now();
    application->OnDetectComplete(S_OK);
    at[laidOut] = watch.now();
    paint(findDialog());
    at[painted] = watch.now();
    Moments found{};
    for (size_t i = 0; i <= painted; ++i) found[i] = at[i] - (i ? at[i - 1] : 0);
    found[workingSet] = mebibytes(processMemory().workingSet);
    application->OnShutdown();
    application->Release();
    library.destroy();
    return found;
}

/// The moments of a start in another process of this program.
Moments momentsOfProcess(const std::filesystem::path& library, const std::filesystem::path& result, bool rootsBefore) {
    std::wstring program(MAX_PATH, L'\0');
    program.resize(GetModuleFileNameW(nullptr, program.data(), MAX_PATH));
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
        if (!(file >> moment)) throw std::runtime_error("a cold start did not come to its end");
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
    all.push_back(
        {"cold_start", median(whole), "ms", "cold start: all behind the load", Measurement::Aim{paintAim, false}});
    all.push_back({"cold_roots", median(whole) - median(withRoots), "ms",
                   "cold start: of that, Wine's import of the host's root certificates"});
    all.push_back({momentTexts[workingSet].name, median(rounds[workingSet]), "MiB", momentTexts[workingSet].meaning,
                   Measurement::Aim{memoryAim, false}});
    return all;
}

}  // namespace pdx
