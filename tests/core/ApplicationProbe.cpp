#include "tests/core/ApplicationProbe.h"

#include <regex>

#include "core/engine/CallbackGuard.h"
#include "platform/Paths.h"

namespace pdx {
namespace {

AnsweringDialog* current = nullptr;

}  // namespace

AnsweringDialog::AnsweringDialog(Answer wanted) : answer(std::move(wanted)) { current = this; }
AnsweringDialog::~AnsweringDialog() { current = nullptr; }

std::vector<AnsweringDialog::Message> AnsweringDialog::messages() const {
    const std::lock_guard guard(lock);
    return received;
}

std::vector<UINT> AnsweringDialog::numbers() const {
    std::vector<UINT> result;
    for (const Message& message : messages()) result.push_back(message.number);
    return result;
}

LRESULT AnsweringDialog::driveOn(BootstrapperApplication& application, const Message& message) {
    if (message.number == WM_BA_DETECT_COMPLETE) application.engine()->Plan(application.action());
    if (message.number == WM_BA_PLAN_COMPLETE) application.engine()->Apply(message.window);
    if (message.number == WM_BA_APPLY_COMPLETE) application.quit(static_cast<HRESULT>(message.wparam) < 0 ? 1 : 0);
    return 0;
}

LRESULT CALLBACK AnsweringDialog::procedure(HWND window, UINT number, WPARAM wparam, LPARAM lparam) {
    if (number < WM_APP || number > 0xBFFF) return DefWindowProcW(window, number, wparam, lparam);
    Message message = {number, wparam, lparam, {}, window};
    if (number == WM_BA_ERROR) message.error = *reinterpret_cast<const ErrorInfo*>(wparam);
    {
        const std::lock_guard guard(current->lock);
        current->received.push_back(message);
    }
    auto& application = *reinterpret_cast<BootstrapperApplication*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return current->answer ? current->answer(application, message) : 0;
}

void AnsweringDialog::run(BootstrapperApplication& application) {
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = libraryModule();
    windowClass.lpszClassName = L"AnsweringDialog";
    RegisterClassW(&windowClass);
    HWND window = CreateWindowExW(0, windowClass.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                  libraryModule(), nullptr);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&application));
    application.setDialogWindow(window);
    application.setDialogReady(true);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
    application.setDialogWindow(nullptr);
    DestroyWindow(window);
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

ProbedRun::ProbedRun(BOOTSTRAPPER_ACTION action, BOOTSTRAPPER_DISPLAY display, UiThread uiThread,
                     MakeTelemetry makeTelemetry)
    : uiThreadRoutine(uiThread), telemetryMaker(makeTelemetry) {
    command.action = action;
    command.display = display;
    for (const wchar_t* name : {L"PDX_REPAIR", L"PDX_MERIDIAN_MODE"}) engine.variables.set(name, std::wstring(L"0"));
}

ProbedRun::~ProbedRun() { release(); }

ProbedApplication& ProbedRun::app() {
    if (!application) {
        application = new ProbedApplication(&engine, &command, 0, 1000, uiThreadRoutine, telemetryMaker, world.hooks());
        guarded = guardCallbacks(application);
        telemetry = std::static_pointer_cast<RecordingTelemetry>(g_telemetry.get());
    }
    return *application;
}

std::vector<std::string> ProbedRun::told() {
    app();
    return telemetry->notes();
}

void ProbedRun::release() {
    if (guarded) guarded->Release();
    guarded = nullptr;
    application = nullptr;
}

RunOutcome ProbedRun::run(EngineScript script, SlotHook hook) {
    return EngineRun(engine, slots(), std::move(script), std::move(hook)).run();
}

}  // namespace pdx
