// The shipped library, loaded as the engine loads it.
#pragma once

#include <windows.h>

#include <filesystem>

#include "core/engine/Callbacks.h"
#include "platform/Handles.h"

namespace pdx {

/// Loads on construction, frees on destruction. The application object is the caller's to release, before destroy().
class LoadedLibrary {
  public:
    explicit LoadedLibrary(const std::filesystem::path& file)
        : module(LoadLibraryW(file.c_str())),
          createExport(find<CreateFunction>("BootstrapperApplicationCreate")),
          destroyExport(find<DestroyFunction>("BootstrapperApplicationDestroy")) {}

    /// The library is there, with both exports.
    explicit operator bool() const { return createExport && destroyExport; }

    HRESULT create(IBootstrapperEngine* engine, const BOOTSTRAPPER_COMMAND* command,
                   IBootstrapperApplication** application) const {
        return createExport(engine, command, application);
    }
    void destroy() const { destroyExport(); }

  private:
    struct Traits {
        using Value = HMODULE;
        static Value invalid() noexcept { return nullptr; }
        static void close(Value value) noexcept { FreeLibrary(value); }
    };
    using CreateFunction = HRESULT(WINAPI*)(IBootstrapperEngine*, const BOOTSTRAPPER_COMMAND*,
                                            IBootstrapperApplication**);
    using DestroyFunction = void(WINAPI*)();

    template <typename Function>
    Function find(const char* name) const {
        return module ? reinterpret_cast<Function>(GetProcAddress(module.get(), name)) : nullptr;
    }

    UniqueHandle<Traits> module;
    CreateFunction createExport;
    DestroyFunction destroyExport;
};

}  // namespace pdx
