// The library with an application object and its dialog, for measurements.
#pragma once

#include <memory>
#include <stdexcept>

#include "harness/programs/engine/LoadedLibrary.h"
#include "harness/programs/engine/SmallEngine.h"

namespace pdx {

/// An installation before detection, whose callbacks the measurement calls. The constructor loads the library; create
/// and startUp make and start the application object; end, or the destructor, ends its life.
class StartedLibrary {
  public:
    explicit StartedLibrary(const std::filesystem::path& file, BOOTSTRAPPER_DISPLAY display = BOOTSTRAPPER_DISPLAY_NONE,
                            std::unique_ptr<SmallEngine> itsEngine = std::make_unique<SmallEngine>())
        : engine(std::move(itsEngine)), library(file) {
        if (!library) throw std::runtime_error("the library cannot be loaded");
        engine->keepRecords(false);
        for (const auto* mode : {L"PDX_REPAIR", L"PDX_MERIDIAN_MODE"}) engine->variables.set(mode, L"0");
        command.action = BOOTSTRAPPER_ACTION_INSTALL;
        command.display = display;
    }
    StartedLibrary(const StartedLibrary&) = delete;
    StartedLibrary& operator=(const StartedLibrary&) = delete;
    ~StartedLibrary() { end(); }

    void create() {
        if (FAILED(library.create(engine.get(), &command, &instance)))
            throw std::runtime_error("the library makes no application object");
    }
    void startUp() {
        if (FAILED(instance->OnStartup())) throw std::runtime_error("the library does not start");
    }
    void start() {
        create();
        startUp();
    }
    void end() {
        if (instance) {
            instance->OnShutdown();
            instance->Release();
            instance = nullptr;
        }
        library.destroy();
    }
    IBootstrapperApplication& application() { return *instance; }

  private:
    std::unique_ptr<SmallEngine> engine;
    BOOTSTRAPPER_COMMAND command{};
    LoadedLibrary library;
    IBootstrapperApplication* instance = nullptr;
};

/// This process's dialog; throws when there is none.
inline HWND findDialog() {
    HWND found = nullptr;
    while ((found = FindWindowExW(nullptr, found, L"#32770", nullptr)) != nullptr) {
        DWORD process = 0;
        GetWindowThreadProcessId(found, &process);
        if (process == GetCurrentProcessId()) return found;
    }
    throw std::runtime_error("there is no window");
}

/// Paints the window and all its children now.
inline void paint(HWND dialog, UINT invalidation = 0) {
    RedrawWindow(dialog, nullptr, nullptr, invalidation | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

}  // namespace pdx
