// The library with an application object that has started, for measurements of single slots.
#pragma once

#include <memory>
#include <stdexcept>

#include "harness/engine/LoadedLibrary.h"
#include "harness/engine/SmallEngine.h"

namespace pdx {

/// A silent install, before detection. The slots are called by whoever measures; the end of the life comes with the
/// destructor.
class StartedLibrary {
  public:
    explicit StartedLibrary(const std::filesystem::path& file) : library(file) {
        if (!library) throw std::runtime_error("the library cannot be loaded");
        engine.keepRecords(false);
        for (const auto* mode : {L"PDX_REPAIR", L"PDX_MERIDIAN_MODE"}) engine.variables.set(mode, L"0");
        command.action = BOOTSTRAPPER_ACTION_INSTALL;
        command.display = BOOTSTRAPPER_DISPLAY_NONE;
    }
    StartedLibrary(const StartedLibrary&) = delete;
    StartedLibrary& operator=(const StartedLibrary&) = delete;
    ~StartedLibrary() {
        if (instance) {
            instance->OnShutdown();
            instance->Release();
        }
        library.destroy();
    }

    void start() {
        if (FAILED(library.create(&engine, &command, &instance)) || FAILED(instance->OnStartup()))
            throw std::runtime_error("the library does not start");
    }
    IBootstrapperApplication& application() { return *instance; }

  private:
    SmallEngine engine;
    BOOTSTRAPPER_COMMAND command{};
    LoadedLibrary library;
    IBootstrapperApplication* instance = nullptr;
};

}  // namespace pdx
