#include "tests/core/ApplicationProbe.h"

#include <fmt/format.h>

#include <atomic>
#include <regex>

#include "core/engine/CallbackGuard.h"
#include "platform/Text.h"

namespace pdx {
namespace {

std::string statusText(HRESULT hr) { return fmt::format("{:08x}", static_cast<uint32_t>(hr)); }

/// Shows nothing: each step is passed to the script.
class ScriptedUi : public RunUi {
  public:
    ScriptedUi(RunControls& controls, UiScript& uiScript) : run(controls), script(uiScript) {}

    bool open() override { return opened = true; }
    void close() override { opened = false; }
    void hideWindow() override { script.leftTheScreen = true; }
    HWND window() const override { return nullptr; }
    void settle() override { script.onSettle(run); }

    void showUpdateCheck() override { show("showUpdateCheck"); }
    void detectComplete(HRESULT status) override { show("detectComplete", statusText(status), status); }
    void planComplete(HRESULT status) override { show("planComplete", statusText(status), status); }
    int showError(const ErrorInfo& error) override {
        return step({"showError", std::to_string(error.code), S_OK, error});
    }
    int cacheBegin() override { return show("cacheBegin"); }
    int cacheAcquireBegin(BOOTSTRAPPER_CACHE_OPERATION operation, LPCWSTR source) override {
        return show("cacheAcquireBegin", fmt::format("{}, {}", int{operation}, toUtf8(textOrEmpty(source))));
    }
    int cacheAcquireProgress(DWORD overall) override { return show("cacheAcquireProgress", std::to_string(overall)); }
    int cacheAcquireComplete(HRESULT status, int recommendation) override {
        return show("cacheAcquireComplete", fmt::format("{}, {}", statusText(status), recommendation), status);
    }
    int executeBegin(DWORD packages) override { return show("executeBegin", std::to_string(packages)); }
    int executePackageBegin(bool forward, LPCWSTR package) override {
        return show("executePackageBegin", fmt::format("{}, {}", forward, toUtf8(textOrEmpty(package))));
    }
    int executeProgress(DWORD package, DWORD overall) override {
        return show("executeProgress", fmt::format("{}, {}", package, overall));
    }
    int applyComplete(HRESULT status, BOOTSTRAPPER_APPLY_RESTART restart) override {
        return show("applyComplete", fmt::format("{}, {}", statusText(status), int{restart}), status);
    }
    InstalledChoice askInstalled() override { return static_cast<InstalledChoice>(show("askInstalled")); }
    BastionChoice askAboutBastion() override { return static_cast<BastionChoice>(show("askAboutBastion")); }
    void showRepairBeginning() override { show("showRepairBeginning"); }
    void showReportUnderWay() override { show("showReportUnderWay"); }
    void showBastionTitle() override { show("showBastionTitle"); }
    void showBastionRemoval() override { show("showBastionRemoval"); }

  private:
    int step(UiScript::Step step) {
        if (run.isStopped()) return IDCANCEL;
        return opened ? script.show(run, std::move(step)) : 0;
    }
    int show(const char* name, std::string arguments = {}, HRESULT status = S_OK) {
        return step({name, std::move(arguments), status, {}});
    }

    RunControls& run;
    UiScript& script;
    std::atomic<bool> opened = false;
};

}  // namespace

int UiScript::driveOn(RunControls& run, const Step& step) {
    if (step.name == "detectComplete") run.plan();
    if (step.name == "planComplete") run.apply(nullptr);
    if (step.name == "applyComplete") run.quit(FAILED(step.status) ? 1 : 0);
    return 0;
}

int UiScript::show(RunControls& run, Step step) {
    {
        const std::lock_guard guard(lock);
        steps.push_back(step);
    }
    return answer(run, step);
}

std::vector<std::string> UiScript::names() const {
    const std::lock_guard guard(lock);
    std::vector<std::string> result;
    for (const Step& step : steps) result.push_back(step.name);
    return result;
}

std::vector<std::string> UiScript::texts() const {
    const std::lock_guard guard(lock);
    std::vector<std::string> result;
    for (const Step& step : steps) result.push_back(step.text());
    return result;
}

std::vector<ErrorInfo> UiScript::errors() const {
    const std::lock_guard guard(lock);
    std::vector<ErrorInfo> result;
    for (const Step& step : steps)
        if (step.name == "showError") result.push_back(step.error);
    return result;
}

void RecordingTelemetry::send(const TelemetryEvent& event) {
    const char* sender = event.sender == tallySender ? "tally" : "brisk";
    note(std::string(event.urgent ? "urgent " : "") + sender + " " + event.name + " " + event.params.dump());
    const std::lock_guard guard(lock);
    last[event.name] = event.params;
}

void RecordingTelemetry::note(std::string text) {
    static const std::pair<std::regex, const char*> own[] = {
        {std::regex(R"("20\d\d-\d\d-\d\dT\d\d:\d\d:\d\d\.\d\d\d")"), "<time>"},
        {std::regex(R"("[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}")"), "<id>"},
        {std::regex(R"re("cmd":"(\\.|[^"])+")re"), "\"cmd\":<text>"},
        {std::regex(R"("vc\d\dx\d\dver":"")"), "<runtime>"},
        {std::regex("(<runtime>,){4}<runtime>"), "<runtimes>"},
    };
    for (const auto& [pattern, name] : own) text = std::regex_replace(text, pattern, name);
    const std::lock_guard guard(lock);
    noted.push_back(std::move(text));
}

nlohmann::json RecordingTelemetry::attributes(const std::string& name) const {
    const std::lock_guard guard(lock);
    const auto found = last.find(name);
    return found != last.end() ? found->second : nlohmann::json();
}

std::vector<std::string> RecordingTelemetry::notes() const {
    const std::lock_guard guard(lock);
    return noted;
}

RunHooks FakeWorld::hooks() {
    RunHooks hooks;
    hooks.steadyTime = [this] { return clock; };
    hooks.pause = [this](std::chrono::milliseconds time) {
        clock += time;
        if (onPause) onPause();
    };
    hooks.newerInstaller = [this](const std::string& currentVersion) {
        updatesAsked.push_back(currentVersion);
        if (onUpdateAsked) onUpdateAsked();
        return newer;
    };
    hooks.isElevated = [this] { return elevated; };
    hooks.libraryFolder = [this] { return libraryFolder; };
    hooks.lockElevated = [this](auto&... arguments) { return lock(arguments...); };
    hooks.sendReport = [this](auto& files) { return report(files); };
    hooks.startProgram = [this](auto& copy) { return start(copy); };
    return hooks;
}

ProbedRun::ProbedRun(BOOTSTRAPPER_ACTION action, BOOTSTRAPPER_DISPLAY display, MakeTelemetry makeTelemetry)
    : makeUi([this](RunControls& run) { return std::make_unique<ScriptedUi>(run, ui); }),
      telemetryMaker(makeTelemetry) {
    command.action = action;
    command.display = display;
    for (const wchar_t* name : {L"PDX_REPAIR", L"PDX_MERIDIAN_MODE"}) engine.variables.set(name, std::wstring(L"0"));
}

ProbedRun::~ProbedRun() { release(); }

ProbedApplication& ProbedRun::app() {
    if (!application) {
        application = new ProbedApplication(&engine, &command, 0, 1000, makeUi, telemetryMaker, world.hooks());
        guarded = guardCallbacks(application);
        telemetry = std::static_pointer_cast<RecordingTelemetry>(g_telemetry.get());
    }
    return *application;
}

std::vector<std::string> ProbedRun::reported() {
    app();
    return telemetry->notes();
}

void ProbedRun::release() {
    if (guarded) guarded->Release();
    guarded = nullptr;
    application = nullptr;
}

RunOutcome ProbedRun::run(EngineScript script, CallbackHook hook) {
    return EngineRun(engine, callbacks(), std::move(script), std::move(hook)).run();
}

}  // namespace pdx
