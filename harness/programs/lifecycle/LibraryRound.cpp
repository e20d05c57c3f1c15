#include "harness/programs/lifecycle/LibraryRound.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <system_error>

#include "harness/programs/engine/EngineRun.h"
#include "harness/programs/engine/LoadedLibrary.h"
#include "platform/Handles.h"
#include "platform/rules/EngineTypes.h"
#include "platform/Text.h"
#include "ui/dialog/AppMessages.h"

namespace pdx {

namespace {

namespace fs = std::filesystem;

constexpr const wchar_t* installerMutex = L"Global\\Palisade_Desktop_Installer";
constexpr auto secondInstanceStatus = static_cast<HRESULT>(0xA7FF0480);
/// Another installation is running: worth a second try, if the library ever made one.
constexpr auto packageFailure = static_cast<HRESULT>(0x80070652);
/// The button of the already-installed prompt that asks for a repair.
constexpr LRESULT repairAnswer = 2;
constexpr size_t logLinesShown = 20;
constexpr DWORD hangBound = 60000;  // milliseconds

/// What a run is given and how it has to end.
struct RoundPlan {
    BOOTSTRAPPER_ACTION action = BOOTSTRAPPER_ACTION_INSTALL;
    BOOTSTRAPPER_DISPLAY display = BOOTSTRAPPER_DISPLAY_NONE;
    EngineScript script = {.hangBound = hangBound};
    HRESULT startup = S_OK;
    int shutdown = 0;
    DWORD exitCode = 0;
    std::optional<HRESULT> apply = S_OK;
    bool takesOver = false;  ///< from an object that was made for another engine, which is not destroyed before
};

RoundPlan planOf(RoundKind kind) {
    constexpr auto present = BOOTSTRAPPER_PACKAGE_STATE_PRESENT;
    switch (kind) {
        case RoundKind::install:  // with a window, whose pictures are prepared, that asks nobody
            return {.display = BOOTSTRAPPER_DISPLAY_PASSIVE, .takesOver = true};
        case RoundKind::uninstall:
            return {.action = BOOTSTRAPPER_ACTION_UNINSTALL, .script = {.package = present, .hangBound = hangBound}};
        case RoundKind::download:
            return {.script = {.downloads = true, .parallelCache = true, .hangBound = hangBound}};
        case RoundKind::packageFails:
            return {
                .script = {.execute = packageFailure, .hangBound = hangBound}, .exitCode = 1, .apply = packageFailure};
        case RoundKind::secondInstance:
            return {.startup = secondInstanceStatus,
                    .exitCode = static_cast<DWORD>(secondInstanceStatus),
                    .apply = std::nullopt};
        case RoundKind::reload:
            return {.script = {.package = present, .hangBound = hangBound},
                    .shutdown = resultReloadBootstrapper,
                    .apply = std::nullopt};
    }
    return {};
}

/// Replaces the dialog's window procedure and answers the already-installed prompt in the user's place: with no
/// display the dialog would give the prompt's default, which is not the repair.
class PromptAnswer {
  public:
    static void put(HWND dialog) {
        const auto previous = GetWindowLongPtrW(dialog, GWLP_WNDPROC);
        SetPropW(dialog, property, reinterpret_cast<HANDLE>(previous));
        SetWindowLongPtrW(dialog, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
    }

  private:
    static constexpr const wchar_t* property = L"LifecycleDriverProcedure";

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
        if (message == WM_BA_PROMPT_ALREADY_INSTALLED) return repairAnswer;
        const auto previous = reinterpret_cast<WNDPROC>(GetPropW(window, property));
        if (message == WM_NCDESTROY) RemovePropW(window, property);
        return CallWindowProcW(previous, window, message, wparam, lparam);
    }
};

/// The driver's own filter of unhandled exceptions, which each object must restore.
LONG CALLBACK driverFilter(EXCEPTION_POINTERS*) { return EXCEPTION_CONTINUE_SEARCH; }

/// Notes what does not hold.
class Findings {
  public:
    void expect(bool holds, std::string text) {
        if (!holds) lines.push_back(std::move(text));
    }
    void expectStatus(const char* what, HRESULT found, HRESULT expected) {
        char text[128];
        std::snprintf(text, sizeof(text), "%s is %08lx instead of %08lx", what, found, expected);
        expect(found == expected, text);
    }
    std::vector<std::string> lines;
};

void presetVariables(SmallEngine& engine, const fs::path& folder) {
    const std::pair<const wchar_t*, std::wstring> presets[] = {
        {L"PDX_REPAIR", L"0"},
        {L"PDX_MERIDIAN_MODE", L"0"},
        {L"IsThickInstaller", L"yes"},
        {L"ProgramFiles64Folder", L"C:\\Program Files\\"},
        {L"InstallFolder", L"[ProgramFiles64Folder]Palisade"},
        {L"BundleExecutableName", L"lifecycle.exe"},
        {L"WixBundleLog", (folder / L"bundle.log").wstring()},
        {L"WixBundleLog_PalisadeApp.msi", (folder / L"package.log").wstring()},
        {L"WixBundleRollbackLog_PalisadeApp.msi", (folder / L"package_rollback.log").wstring()},
    };
    for (const auto& [name, value] : presets) engine.variables.set(name, value);
}

void checkOutcome(const RoundPlan& plan, const RunOutcome& outcome, Findings& findings) {
    findings.expect(outcome.failure.empty(), outcome.failure);
    findings.expectStatus("OnStartup's result", outcome.startup, plan.startup);
    findings.expectStatus("OnShutdown's result", outcome.shutdown, plan.shutdown);
    findings.expectStatus("the exit code", static_cast<HRESULT>(outcome.exitCode), static_cast<HRESULT>(plan.exitCode));
    const auto isRetry = [](const CallbackCall& call) {
        return call.callback.ends_with("Complete") && call.result == IDRETRY;
    };
    findings.expect(std::ranges::none_of(outcome.calls, isRetry), "a failure was tried again");
    findings.expect(outcome.apply.has_value() == plan.apply.has_value(),
                    plan.apply ? "nothing was applied" : "something was applied");
    if (outcome.apply && plan.apply) findings.expectStatus("the apply's status", *outcome.apply, *plan.apply);
}

/// What an engine never does, on a library without an object: nothing is made, and no engine is kept.
void checkExports(const LoadedLibrary& library, const BOOTSTRAPPER_COMMAND& command, Findings& findings) {
    library.destroy();
    SmallEngine other;
    IBootstrapperApplication* application = nullptr;
    findings.expectStatus("a creation without a place for the object", library.create(&other, &command, nullptr),
                          E_INVALIDARG);
    findings.expectStatus("a creation without an engine", library.create(nullptr, &command, &application),
                          E_INVALIDARG);
    findings.expectStatus("a creation without a command", library.create(&other, nullptr, &application), E_INVALIDARG);
    findings.expect(!application && other.references() == 0, "a refused creation made an object or kept the engine");
}

/// From the load of the library to its unload.
void runLibrary(const fs::path& file, const RoundPlan& plan, SmallEngine& engine, Findings& findings) {
    const LoadedLibrary library(file);
    if (!library) return findings.expect(false, "the library cannot be loaded, or lacks an export");
    BOOTSTRAPPER_COMMAND command{};
    command.action = plan.action;
    command.display = plan.display;
    command.restart = BOOTSTRAPPER_RESTART_NEVER;
    checkExports(library, command, findings);
    SetUnhandledExceptionFilter(driverFilter);
    SmallEngine earlier;
    IBootstrapperApplication* application = nullptr;
    if (plan.takesOver && SUCCEEDED(library.create(&earlier, &command, &application))) application->Release();
    findings.expect((earlier.references() > 0) == plan.takesOver, "the engine is not kept before a second creation");
    const HRESULT created = library.create(&engine, &command, &application);
    findings.expectStatus("the creation's result", created, S_OK);
    findings.expect(earlier.references() == 0, "the engine of an earlier creation is still referenced");
    findings.expect(!findsStrayLibrary(), "a library beside the program is still found");
    if (SUCCEEDED(created)) {
        const bool answersPrompt = plan.shutdown == resultReloadBootstrapper;
        const auto hook = [&](const CallbackEvent& event) {
            if (!answersPrompt || event.returned || event.callback != "OnDetectPackageBegin") return;
            const auto window = std::stoul(engine.calls("Detect").back().arguments.front());
            PromptAnswer::put(reinterpret_cast<HWND>(window));
        };
        checkOutcome(plan, EngineRun(engine, *application, plan.script, hook).run(), findings);
        findings.expect(application->Release() == 0, "the application object outlives the last Release");
        // One that never starts must leave nothing either.
        if (plan.takesOver && SUCCEEDED(library.create(&engine, &command, &application))) application->Release();
    }
    findings.expect(SetUnhandledExceptionFilter(driverFilter) == driverFilter, "exceptions still reach the library");
    library.destroy();
    findings.expect(engine.references() == 0, "the engine is still referenced after the library was destroyed");
}

/// The library makes and holds the client package's log from the first byte on; after the run it is there and free.
void checkPackageLogs(const RoundPlan& plan, const fs::path& folder, Findings& findings) {
    std::error_code error;
    const bool executes = plan.apply.has_value();
    findings.expect(fs::remove(folder / L"package.log", error) == executes && !error,
                    executes ? "the package's log was not made, or is still held" : "a package's log was made");
    const bool rollsBack = executes && FAILED(*plan.apply);
    findings.expect(fs::remove(folder / L"package_rollback.log", error) == rollsBack && !error,
                    rollsBack ? "the rollback's log was not made, or is still held" : "a rollback's log was made");
}

}  // namespace

bool findsStrayLibrary() {
    // None of its code runs.
    const HMODULE found = LoadLibraryExW(strayLibrary, nullptr, DONT_RESOLVE_DLL_REFERENCES);
    return found && FreeLibrary(found);
}

const char* nameOf(RoundKind kind) {
    constexpr const char* names[] = {"install", "uninstall", "download", "package fails", "second instance", "reload"};
    return names[static_cast<size_t>(kind)];
}

std::vector<std::string> runRound(RoundKind kind, const fs::path& library, const fs::path& folder) {
    Findings findings;
    const auto plan = planOf(kind);
    const auto file = folder / L".ba" / L"PalisadeBootstrapper.dll";
    fs::create_directories(file.parent_path());
    fs::copy_file(library, file);

    SmallEngine engine;
    presetVariables(engine, folder);
    {
        const Handle rival(kind == RoundKind::secondInstance ? CreateMutexW(nullptr, FALSE, installerMutex) : nullptr);
        runLibrary(file, plan, engine, findings);
    }
    const bool pinned = kind == RoundKind::reload;
    findings.expect(!!GetModuleHandleW(file.c_str()) == pinned,
                    pinned ? "the library was unmapped before the reload" : "the library is still loaded");
    if (kind == RoundKind::reload) {
        findings.expect(engine.variables.text(L"PDX_REPAIR") == L"1", "PDX_REPAIR was not handed on");
        // What the second object does with a repair is not checked; it must end, and ask for no third.
        auto second = planOf(kind);
        second.shutdown = 0;
        runLibrary(file, second, engine, findings);
        SetEnvironmentVariableW(L"PDX_REPAIR", nullptr);
    }
    checkPackageLogs(plan, folder, findings);

    std::error_code error;
    fs::remove_all(folder, error);
    findings.expect(fs::exists(folder) == pinned, pinned ? "the library was not pinned" : "the folder is still there");
    if (!findings.lines.empty()) {
        const auto log = engine.log();
        for (size_t i = log.size() - std::min(log.size(), logLinesShown); i < log.size(); ++i)
            findings.lines.push_back("  log: " + toUtf8(log[i].text));
    }
    return findings.lines;
}

}  // namespace pdx
