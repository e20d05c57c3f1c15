#include "harness/programs/gallery/Pages.h"

#include <exception>
#include <stdexcept>
#include <utility>

#include "config/Translator.h"
#include "core/BootstrapperApplication.h"
#include "harness/programs/engine/SmallEngine.h"
#include "platform/Paths.h"
#include "ui/dialog/AppMessages.h"

namespace pdx {
namespace {

constexpr auto connectionLost = static_cast<HRESULT>(0x80072EE7);
constexpr auto blockedByPolicy = static_cast<HRESULT>(0x800704EC);
constexpr DWORD errorDiskFull = 1336, errorTimeout = 25000;

/// A run of the installer as far as its dialog sees it: engine, application, dialog, all on this thread.
struct Stage {
    Stage(BOOTSTRAPPER_ACTION action, const std::wstring& language) {
        engine.keepRecords(false);
        command.action = action;
        command.display = BOOTSTRAPPER_DISPLAY_FULL;
        for (const wchar_t* name : {L"PDX_REPAIR", L"PDX_MERIDIAN_MODE"})
            engine.variables.set(name, std::wstring(L"0"));
        engine.variables.set(L"InstallFolder", std::wstring(L"C:\\Program Files\\Palisade Desktop"));
        engine.variables.set(L"IsThickInstaller", std::wstring(L"yes"));
        // The UI thread is never started: the dialog lives on this one, where it can be looked at.
        const auto noUi = [](RunControls&) { return std::unique_ptr<RunUi>(); };
        application = std::make_unique<BootstrapperApplication>(&engine, &command, 0, 1000, noUi, nullptr);
        // As the application does for a language that the configuration forces.
        if (!g_translator.get()->Load(language)) throw std::runtime_error("there is no such language");
        dialog = std::make_unique<GalleryDialog>(*application, gate);
        if (!dialog->Create({})) throw std::runtime_error("the dialog cannot be made");
        SetForegroundWindow(dialog->getHandle());
        handlePosted(dialog->getHandle());
    }

    LRESULT send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const {
        return SendMessageW(dialog->getHandle(), message, wparam, lparam);
    }
    void fail(DWORD type, DWORD code, DWORD style) const {
        const ErrorInfo error = {.errorType = type, .code = code, .uiHint = style, .defaultResult = IDCANCEL};
        send(WM_BA_ERROR, reinterpret_cast<WPARAM>(&error));
    }
    /// A click as the native button reports it, without the focus.
    void press(int32_t id) const {
        send(WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(dialog->GetItem(id)));
    }

    SmallEngine engine;
    BOOTSTRAPPER_COMMAND command{};
    std::unique_ptr<BootstrapperApplication> application;
    DialogGate gate;
    std::unique_ptr<GalleryDialog> dialog;
    Handle runningClient;
};

/// How a page is made to show. A prompt is answered with a press on one of its buttons.
struct Stop {
    const char* page;
    void (*ask)(Stage& stage);
    int32_t answer = 0;
};

/// An error with the button set of a message box style.
template <DWORD code, DWORD type = BOOTSTRAPPER_ERROR_TYPE_WINDOWS_INSTALLER, DWORD style = MB_OK>
void fail(Stage& stage) {
    stage.fail(type, code, style);
}

template <UINT message>
void send(Stage& stage) {
    stage.send(message);
}

template <int32_t control>
void press(Stage& stage) {
    stage.press(control);
}

void stay(Stage&) {}

constexpr Stop installStops[] = {
    {"blank", stay},
    {"checking-update", send<WM_BA_DETECT_UPDATE_BEGIN>},
    {"welcome", send<WM_BA_DETECT_COMPLETE>},
    {"close", press<IDC_CLOSE>, IDC_ACTION1},
    {"options", press<IDC_OPTIONS>},
    {"folder-relative", [](Stage& s) { s.dialog->ValidateInstallFolder(L"Palisade"); }, IDC_ACTION1},
    {"folder-network", [](Stage& s) { s.dialog->ValidateInstallFolder(L"\\\\server\\games"); }, IDC_ACTION1},
    {"folder-older-client", [](Stage& s) { s.dialog->ValidateInstallFolder(L"C:\\Bastion\\Palisade"); }, IDC_ACTION1},
    {"folder-full", [](Stage& s) { s.dialog->ValidateInstallFolder(L"D:\\Palisade Desktop"); }, IDC_ACTION1},
    {"older-client", send<WM_BA_PROMPT_BASTION_UNINSTALL>, IDC_ACTION2},
    {"download",
     [](Stage& s) {
         s.engine.variables.set(L"IsThickInstaller", std::wstring(L"no"));
         s.send(WM_BA_CACHE_BEGIN);
     }},
    {"download-determinate", [](Stage& s) { s.send(WM_BA_CACHE_ACQUIRE_PROGRESS, 42); }},
    {"connection", [](Stage& s) { s.send(WM_BA_CACHE_ACQUIRE_COMPLETE, static_cast<WPARAM>(connectionLost)); },
     IDC_ACTION1},
    {"install", send<WM_BA_EXECUTE_PACKAGE_BEGIN>},
    {"install-determinate", [](Stage& s) { s.send(WM_BA_EXECUTE_PROGRESS, 40, 70); }},
    {"uninstalling-older-client-title", send<WM_BA_UNINSTALLING_BASTION_TITLE>},
    {"uninstalling-older-client", send<WM_BA_UNINSTALLING_BASTION>},
    {"repair", send<WM_BA_REPAIR_INITIALIZING>},
    {"sending-report", send<WM_BA_SENDING_ERROR_REPORT>},
    {"error-old-system", fail<errorSystemTooOld>, IDC_ACTION1},
    {"error-second-instance", fail<errorSecondInstance>, IDC_ACTION1},
    {"error-disk-full", fail<errorDiskFull>, IDC_ACTION1},
    {"error-not-elevated", fail<userExitCode, BOOTSTRAPPER_ERROR_TYPE_ELEVATE, MB_RETRYCANCEL>, IDC_ACTION2},
    {"error-timeout", fail<errorTimeout>, IDC_ACTION1},
    {"error-unknown", fail<genericFailureCode>, IDC_ACTION1},
    {"error-ok-cancel", fail<genericFailureCode, BOOTSTRAPPER_ERROR_TYPE_EXE_PACKAGE, MB_OKCANCEL>, IDC_ACTION1},
    {"error-abort-retry-ignore", fail<genericFailureCode, BOOTSTRAPPER_ERROR_TYPE_EXE_PACKAGE, MB_ABORTRETRYIGNORE>,
     IDC_ACTION3},
    {"error-yes-no-cancel", fail<genericFailureCode, BOOTSTRAPPER_ERROR_TYPE_EXE_PACKAGE, MB_YESNOCANCEL>, IDC_ACTION3},
    {"error-cancel-try-continue", fail<genericFailureCode, BOOTSTRAPPER_ERROR_TYPE_EXE_PACKAGE, MB_CANCELTRYCONTINUE>,
     IDC_ACTION3},
    {"already-installed", send<WM_BA_PROMPT_ALREADY_INSTALLED>, IDC_ACTION1},
    {"restart-required", [](Stage& s) { s.send(WM_BA_APPLY_COMPLETE, S_OK, BOOTSTRAPPER_APPLY_RESTART_REQUIRED); },
     IDC_ACTION2},
    {"not-authenticated", [](Stage& s) { s.send(WM_BA_APPLY_COMPLETE, static_cast<WPARAM>(blockedByPolicy)); },
     IDC_ACTION1},
};

constexpr Stop uninstallStops[] = {
    {"client-running",
     [](Stage& s) {
         s.runningClient = Handle(CreateMutexW(nullptr, FALSE, L"Global\\PalisadeDesktop.exe"));
         s.send(WM_BA_DETECT_COMPLETE);
         s.runningClient.reset();
     },
     IDC_ACTION2},
    {"confirm-uninstall", send<WM_BA_DETECT_COMPLETE>, IDC_ACTION1},
    {"uninstall-initial", stay},
    {"uninstall", send<WM_BA_EXECUTE_PACKAGE_BEGIN>},
    {"uninstall-complete", send<WM_BA_APPLY_COMPLETE>, IDC_ACTION1},
};

/// What the prompt's own message loop is to run; empty once it has.
std::function<void()> promptVisit;

void CALLBACK runPromptVisit(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    std::exchange(promptVisit, nullptr)();
}

void visitPrompt(Stage& stage, const Stop& stop, const PageVisitor& visitor) {
    std::exception_ptr failure;  // must not pass through the system's frames
    promptVisit = [&] {
        try {
            visitor(*stage.dialog, stop.page);
        } catch (...) {
            failure = std::current_exception();
        }
        stage.press(stop.answer);
    };
    const UINT_PTR timer = SetTimer(nullptr, 0, 0, runPromptVisit);
    stop.ask(stage);
    KillTimer(nullptr, timer);
    if (failure) std::rethrow_exception(failure);
    if (promptVisit) throw std::runtime_error(std::string("no prompt was shown: ") + stop.page);
}

void visit(Stage& stage, std::span<const Stop> stops, const PageVisitor& visitor) {
    for (const Stop& stop : stops) {
        if (stop.answer) {
            visitPrompt(stage, stop, visitor);
        } else {
            stop.ask(stage);
            visitor(*stage.dialog, stop.page);
        }
        handlePosted(stage.dialog->getHandle());
    }
}

/// The end of a dialog asks the thread to end; the next dialog must not receive that.
void forgetQuit() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
}

}  // namespace

void visitPages(const std::wstring& language, const PageVisitor& visitor) {
    {
        Stage install(BOOTSTRAPPER_ACTION_INSTALL, language);
        visit(install, installStops, visitor);
    }
    forgetQuit();
    {
        // One process at a time stands in for a client that runs: every process of the machine sees that client.
        const Handle turn(CreateMutexW(nullptr, FALSE, L"PalisadeGallery"));
        WaitForSingleObject(turn.get(), INFINITE);
        Stage uninstall(BOOTSTRAPPER_ACTION_UNINSTALL, language);
        visit(uninstall, uninstallStops, visitor);
        ReleaseMutex(turn.get());
    }
    forgetQuit();
}

}  // namespace pdx
