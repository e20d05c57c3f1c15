// The library with an application object that has started, for measurements of single slots.
#pragma once

#include <memory>
#include <stdexcept>

#include "harness/programs/engine/LoadedLibrary.h"
#include "harness/programs/engine/SmallEngine.h"

namespace pdx {

/// An install before detection, silent unless told otherwise. The slots are called by whoever measures; the end of the
/// life comes with the destructor.
class StartedLibrary {
  public:
    explicit StartedLibrary(const std::filesystem::path& file, BOOTSTRAPPER_DISPLAY display = BOOTSTRAPPER_DISPLAY_NONE)
        : library(file) {
        if (!library) throw std::runtime_error("the library cannot be loaded");
        engine.keepRecords(false);
        for (const auto* mode : {L"PDX_REPAIR", L"PDX_MERIDIAN_MODE"}) engine.variables.set(mode, L"0");
        command.action = BOOTSTRAPPER_ACTION_INSTALL;
        command.display = display;
    }
    StartedLibrary(const StartedLibrary&) = delete;
    StartedLibrary& operator=(const StartedLibrary&) = delete;
    ~StartedLibrary() { end(); }

    void create() {
        if (FAILED(library.create(&engine, &command, &instance)))
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
    SmallEngine engine;
    BOOTSTRAPPER_COMMAND command{};
    LoadedLibrary library;
    IBootstrapperApplication* instance = nullptr;
};

}  // namespace pdx
