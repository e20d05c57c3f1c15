// The library's two exports and its entry point: the one place that puts the modules together.
#include <windows.h>
#ifdef __MINGW32__
#include <pthread.h>
#endif

#include <fmt/format.h>

#include <cstdlib>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "config/Settings.h"
#include "config/Translator.h"
#include "core/BootstrapperApplication.h"
#include "core/engine/CallbackGuard.h"
#include "platform/Lock.h"
#include "platform/Log.h"
#include "platform/MemoryReserve.h"
#include "platform/PathFunctions.h"
#include "platform/Processes.h"
#include "platform/SystemFunction.h"
#include "platform/Text.h"
#include "platform/UncaughtExceptions.h"
#include "reporting/ReportPackage.h"
#include "telemetry/MachineIdentity.h"
#include "telemetry/TelemetryManager.h"
#include "ui/dialog/DialogUi.h"
#include "ui/dialog/PagePictures.h"
#include "ui/toolkit/GdiPlus.h"

namespace pdx {
namespace {

constexpr DWORD retryMaximum = 0;
constexpr DWORD retryDelayMilliseconds = 1000;

/// The support layer's reference to the engine. No owning pointer: if the process ends with the library pinned, the
/// engine may be destroyed before this static.
constinit Lock supportLock;
constinit IBootstrapperEngine* supportEngine = nullptr;

void setSupportEngine(IBootstrapperEngine* engine) {
    if (engine) engine->AddRef();
    IBootstrapperEngine* earlier = nullptr;
    {
        const std::lock_guard guard(supportLock);
        earlier = std::exchange(supportEngine, engine);
    }
    if (earlier) earlier->Release();
}

/// The last system error as a failure.
HRESULT lastErrorAsFailure() {
    const auto error = static_cast<HRESULT>(GetLastError());
    const HRESULT hr = error > 0 ? HRESULT_FROM_WIN32(static_cast<DWORD>(error)) : error;
    return FAILED(hr) ? hr : E_FAIL;
}

std::shared_ptr<TelemetryManager> makeTelemetry() {
    return std::make_shared<TelemetryManager>(TelemetryManager::createSessionId(), getMachineHash);
}

std::unique_ptr<RunUi> makeDialog(RunControls& run) { return std::make_unique<DialogUi>(run); }

/// The application object with the first page of its window, whose preparation starts before the object's constructor.
class Application final : PreparedPage, public BootstrapperApplication {
  public:
    Application(IBootstrapperEngine* engine, const BOOTSTRAPPER_COMMAND* command)
        : PreparedPage(*command, processArguments()),
          BootstrapperApplication(engine, command, retryMaximum, retryDelayMilliseconds, makeDialog, makeTelemetry) {}
};

IBootstrapperApplication* makeApplication(IBootstrapperEngine* engine, const BOOTSTRAPPER_COMMAND* command) {
    // GDI+ is bound late. Without it the first call would crash, and a silent run would wait in the crash's box.
    if (!systemLibrary(L"gdiplus.dll")) {
        engine->Log(BOOTSTRAPPER_LOG_LEVEL_ERROR, L"gdiplus.dll cannot be loaded");
        SetLastError(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    try {
        auto application = std::make_unique<Application>(engine, command);
        // For a run that prepares no page too. Never shut down; logs a failure.
        startGraphics();
        IBootstrapperApplication* const guarded = guardCallbacks(application.get());
        static_cast<void>(application.release());  // the engine owns it
        return guarded;
    } catch (const std::exception&) {
        return nullptr;
    }
}

/// Set when the library is unmapped in a process that continues.
constinit bool unmapped = false;

}  // namespace
}  // namespace pdx

/// Makes the application object for a run. The engine owns it by a reference; the last Release deletes it. On failure
/// returns the last system error, or E_FAIL.
extern "C" HRESULT WINAPI BootstrapperApplicationCreate(IBootstrapperEngine* engine,
                                                        const BOOTSTRAPPER_COMMAND* command,
                                                        IBootstrapperApplication** application) {
    // First: from now on the system does not search the program's folder for a library's bare name.
    pdx::restrictDllSearch();
    pdx::installTerminateHandler();
    pdx::keepMemoryReserve();
    if (!engine || !command || !application) return E_INVALIDARG;
    pdx::setSupportEngine(engine);
    *application = pdx::makeApplication(engine, command);
    if (*application) return S_OK;
    const HRESULT hr = pdx::lastErrorAsFailure();
    const std::string text =
        fmt::format("Error 0x{:08x}: Failed to create bootstrapper application", static_cast<uint32_t>(hr));
    engine->Log(BOOTSTRAPPER_LOG_LEVEL_ERROR, pdx::toWide(text).c_str());
    return hr;
}

/// Releases the engine; the application object is not affected.
extern "C" void WINAPI BootstrapperApplicationDestroy() { pdx::setSupportEngine(nullptr); }

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID processEnds) {
    // Only if the process continues: at its end the system has already ended the other threads, at any point of their
    // work.
    if (reason == DLL_PROCESS_DETACH && !processEnds) {
        pdx::unmapped = true;
        pdx::releaseTelemetry();
        pdx::releaseMachineSurvey();
        pdx::g_exceptionHandler.clear();
        pdx::g_translator.clear();
        pdx::g_config.clear();
        pdx::g_logger.clear();
        pdx::releaseMemoryReserve();
    }
    return TRUE;
}

#ifdef __MINGW32__
/// Replaces the toolchain's handler, which prints the exception first and links a demangler of 50 KB for that.
void __gnu_cxx::__verbose_terminate_handler() { std::abort(); }

/// Runs after the destructors of all statics. The toolchain's thread layer keeps an event and a handle for each thread
/// that it did not start, here the engine's. It would close them only if that thread ended with the library loaded.
__attribute__((destructor(101))) static void closeThreadLayer() {
    if (!pdx::unmapped) return;
    void* const thread = pthread_gethandle(pthread_self());
    void* const event = pthread_getevent();
    if (thread) CloseHandle(thread);
    if (event) CloseHandle(event);
}
#endif
