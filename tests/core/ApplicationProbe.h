// An application object under test: its state readable, with a small engine and a scripted user interface.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "core/BootstrapperApplication.h"
#include "harness/programs/engine/EngineRun.h"
#include "harness/programs/engine/SmallEngine.h"

namespace pdx {

/// What a user interface is to answer, and what it was asked to show.
class UiScript {
  public:
    struct Step {
        std::string name;
        std::string arguments;
        HRESULT status = S_OK;
        ErrorInfo error = {};
        [[nodiscard]] std::string text() const { return name + "(" + arguments + ")"; }
    };
    using Answer = std::function<int(RunControls& run, const Step& step)>;

    /// Plans, applies and quits as the dialog does without a question.
    static int driveOn(RunControls& run, const Step& step);

    /// Any thread.
    int show(RunControls& run, Step step);
    [[nodiscard]] std::vector<std::string> names() const;
    [[nodiscard]] std::vector<std::string> texts() const;
    [[nodiscard]] std::vector<ErrorInfo> errors() const;

    Answer answer = [](auto&, const auto&) { return 0; };
    /// Called where the run waits for the answer to a question of the user interface's own.
    std::function<void(RunControls& run)> onSettle = [](auto&) {};
    std::atomic<bool> leftTheScreen = false;

  private:
    mutable Lock lock;
    std::vector<Step> steps;
};

/// A manager that notes what it is asked and sends nothing.
class RecordingTelemetry : public TelemetryManager {
  public:
    RecordingTelemetry() : TelemetryManager("session", nullptr) {}
    static std::shared_ptr<TelemetryManager> make() { return std::make_shared<RecordingTelemetry>(); }

    void start() override { note("start"); }
    void send(const TelemetryEvent& event) override;
    void setSendingEnabled(bool enabled) override { note(enabled ? "enable" : "disable"); }
    void requestStop() override { note("request stop"); }
    void stop() override { note("stop"); }

    /// In order: events as "tally download {...}", with times, identifiers and the machine's own values under names
    /// such as <time>, and the other calls by their word.
    [[nodiscard]] std::vector<std::string> notes() const;
    /// Unchanged, those of the last event of that name.
    [[nodiscard]] nlohmann::json attributes(const std::string& name) const;

  private:
    void note(std::string text);

    mutable Lock lock;
    std::map<std::string, nlohmann::json> last;
    std::vector<std::string> noted;
};

/// The world around a run, as a test wants it; outlives the application.
struct FakeWorld {
    [[nodiscard]] RunHooks hooks();

    std::chrono::milliseconds clock{0};
    /// What the update service names, and the versions with which it was asked.
    std::optional<std::wstring> newer;
    std::vector<std::string> updatesAsked;
    /// Whether this process runs elevated, and the result of locking the files of an elevated one.
    bool elevated = true;
    std::wstring libraryFolder = L"C:\\T\\{1}\\.ba";
    std::function<bool(std::vector<FileHandle>& files, const std::wstring& folder, const std::wstring& executable)>
        lock = [](auto&...) { return true; };
    /// The process of an elevated copy that is to be started.
    std::function<Handle(const ProgramStart& copy)> start = [](auto&) { return Handle(); };
    /// The report of a failed run, by its files.
    std::function<std::string(const ReportFiles& files)> report = [](auto&) { return std::string(); };
    /// Called at each pause, and while the update service is asked.
    std::function<void()> onPause;
    std::function<void()> onUpdateAsked;
};

class ProbedApplication : public BootstrapperApplication {
  public:
    using BootstrapperApplication::BootstrapperApplication;
    using BootstrapperApplication::cancelCheck;
    using BootstrapperApplication::UpdateInstallStatus;
    RunContext::State state() const { return m_context.state(); }
};

/// An application on a small engine whose bundle variables are preset as a bundle presets them.
class ProbedRun {
  public:
    using MakeTelemetry = std::shared_ptr<TelemetryManager> (*)();
    explicit ProbedRun(BOOTSTRAPPER_ACTION action = BOOTSTRAPPER_ACTION_INSTALL,
                       BOOTSTRAPPER_DISPLAY display = BOOTSTRAPPER_DISPLAY_NONE,
                       MakeTelemetry makeTelemetry = RecordingTelemetry::make);
    ProbedRun(const ProbedRun&) = delete;
    ProbedRun& operator=(const ProbedRun&) = delete;
    ~ProbedRun();

    /// Made on first use, so that a test can set variables before.
    ProbedApplication& app();
    /// The application as the engine calls it.
    IBootstrapperApplication& callbacks() { return app(), *guarded; }
    /// What has been reported so far, the making of the application included.
    std::vector<std::string> reported();
    nlohmann::json attributes(const std::string& name) { return app(), telemetry->attributes(name); }
    /// Releases the application's last reference.
    void release();
    /// Runs from OnStartup to OnShutdown.
    RunOutcome run(EngineScript script = {}, CallbackHook hook = {});

    /// The seconds of the waits before retries, by the test's clock.
    [[nodiscard]] double waitedSeconds() const { return static_cast<double>(world.clock.count()) / 1000; }

    SmallEngine engine;
    BOOTSTRAPPER_COMMAND command = {};
    FakeWorld world;
    UiScript ui;
    /// Makes the user interface: the scripted one unless a test sets another.
    UiFactory makeUi;

  private:
    MakeTelemetry telemetryMaker;
    ProbedApplication* application = nullptr;
    IBootstrapperApplication* guarded = nullptr;
    std::shared_ptr<RecordingTelemetry> telemetry;
};

}  // namespace pdx
