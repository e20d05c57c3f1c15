// The library's two exports and its entry point: the one place that puts the rooms together.
#include <windows.h>

#include "platform/Engine.h"
#include "platform/Log.h"

extern "C" HRESULT WINAPI BootstrapperApplicationCreate(IBootstrapperEngine* engine, const BOOTSTRAPPER_COMMAND*,
                                                        IBootstrapperApplication**) {
    pdx::g_logger.set(std::make_shared<pdx::BootstrapperLogger>(engine));
    PDX_LOG(pdx::logInfo, "BootstrapperApplicationCreate", "%s %ls %5d", "hello", L"wörld", 42);
    return E_NOTIMPL;
}

extern "C" void WINAPI BootstrapperApplicationDestroy() {}
