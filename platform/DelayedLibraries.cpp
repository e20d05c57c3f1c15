// Binds the functions of the libraries that cmake/delayed.cmake names, each with its first call.
#include <windows.h>
// delayimp.h needs the types of windows.h.
#include <delayimp.h>

#include <algorithm>
#include <cstring>

#include "platform/SystemFunction.h"

#ifdef __MINGW32__
extern "C" IMAGE_DOS_HEADER __ImageBase;
#endif

namespace pdx {
namespace {

/// Allocates nothing, like all that the helper calls: no exception passes through the stub that called it.
HMODULE loadDelayed(const char* name) {
    wchar_t wideName[MAX_PATH];
    const size_t length = std::strlen(name) + 1;
    if (length > MAX_PATH) return nullptr;
    std::copy_n(name, length, wideName);
    return systemLibrary(wideName);
}

#ifdef __MINGW32__

/// The data at an offset in this module.
template <typename Type>
Type* atOffset(DWORD offset) {
    return reinterpret_cast<Type*>(reinterpret_cast<std::byte*>(&__ImageBase) + offset);
}

#else

FARPROC WINAPI onDelayedLoad(unsigned event, DelayLoadInfo* info) {
    return event == dliNotePreLoadLibrary ? reinterpret_cast<FARPROC>(loadDelayed(info->szDll)) : nullptr;
}

#endif

}  // namespace
}  // namespace pdx

#ifdef __MINGW32__

/// The toolchain's stubs call it with the place of a function's address, then call the function that it returns. For a
/// missing function it causes the same exception as Microsoft's runtime.
extern "C" FARPROC WINAPI __delayLoadHelper2(const ImgDelayDescr* library, FARPROC* place) {
    const auto index = place - pdx::atOffset<FARPROC>(library->rvaIAT);
    const auto& thunk = pdx::atOffset<IMAGE_THUNK_DATA>(library->rvaINT)[index];
    const char* const name = pdx::atOffset<IMAGE_IMPORT_BY_NAME>(thunk.u1.AddressOfData)->Name;
    const HMODULE module = pdx::loadDelayed(pdx::atOffset<const char>(library->rvaDLLName));
    const auto function = pdx::lookUp<FARPROC>(module, name);
    const DWORD missing = module ? ERROR_PROC_NOT_FOUND : ERROR_MOD_NOT_FOUND;
    if (!function) RaiseException(VcppException(ERROR_SEVERITY_ERROR, missing), 0, 0, nullptr);
    // Safe without a lock: other threads write the same value.
    return *place = function;
}

#else

extern "C" const PfnDliHook __pfnDliNotifyHook2 = pdx::onDelayedLoad;

#endif
