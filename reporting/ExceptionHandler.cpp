#include "reporting/ExceptionHandler.h"

#include <dbghelp.h>

#include <mutex>

#include "config/Translator.h"
#include "platform/Paths.h"
#include "platform/product/InstallerVersion.h"
#include "platform/SystemFunction.h"
#include "platform/Text.h"
#include "reporting/rules/CrashSignature.h"
#include "telemetry/TelemetryManager.h"

namespace pdx {
namespace {

LONG CALLBACK filterOfProcess(EXCEPTION_POINTERS* pointers) {
    const auto handler = g_exceptionHandler.get();
    return handler ? handler->filter(pointers) : EXCEPTION_CONTINUE_SEARCH;
}

/// The file name of the module that holds the address, in the system's code page; empty if there is none.
std::string moduleNameAt(DWORD64 address) {
    HMODULE module = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            reinterpret_cast<LPCWSTR>(static_cast<ULONG_PTR>(address)), &module))
        return {};
    wchar_t path[260];
    const DWORD length = GetModuleFileNameW(module, path, ARRAYSIZE(path));
    if (length == 0) return {};
    const std::wstring_view whole(path, length);
    const std::wstring_view name = whole.substr(whole.find_last_of(L'\\') + 1);
    char narrow[ARRAYSIZE(path) * 3];
    const int bytes = WideCharToMultiByte(CP_ACP, 0, name.data(), static_cast<int>(name.size()), narrow, sizeof narrow,
                                          nullptr, nullptr);
    return {narrow, static_cast<size_t>(bytes)};
}

/// The library that walks stacks; null if the system has none.
HMODULE stackWalker() { return systemLibrary(L"dbghelp.dll"); }

}  // namespace

constinit ServiceHolder<ExceptionHandler> g_exceptionHandler;

ExceptionHandler::ExceptionHandler(CrashBox showBox)
    : previousFilter(SetUnhandledExceptionFilter(filterOfProcess)), box(std::move(showBox)) {
    // Set while a thread still holds an earlier handler of the library: chaining to it would recurse without end.
    if (previousFilter == filterOfProcess) previousFilter = nullptr;
}

ExceptionHandler::~ExceptionHandler() { SetUnhandledExceptionFilter(previousFilter); }

LONG ExceptionHandler::filter(EXCEPTION_POINTERS* pointers) {
    const std::lock_guard guard(lock);
    if (!handled && isFatalException(pointers->ExceptionRecord->ExceptionCode)) {
        handled = true;
        report(*pointers);
    }
    return previousFilter ? previousFilter(pointers) : EXCEPTION_CONTINUE_SEARCH;
}

void ExceptionHandler::report(const EXCEPTION_POINTERS& pointers) {
    sendTelemetry(briskSender, "erro.crit.cras",
                  {{"exe", toUtf8(getProcessFileName())},
                   {"shut", 0},
                   {"vers", installerVersion},
                   {"code", "ec-" + signatureOf(pointers)}},
                  true);
    const auto translator = g_translator.get();
    if (!translator) return;
    // The worker posts the event while the box is open.
    box(translator->translate(L"installer_error_unknown"), translator->translate(L"installer_error_unknown_title"));
}

void ExceptionHandler::showCrashBox(const std::wstring& text, const std::wstring& caption) {
    MessageBoxW(nullptr, text.c_str(), caption.c_str(), MB_ICONERROR);
}

void loadStackWalker() { stackWalker(); }

std::string signatureOf(const EXCEPTION_POINTERS& pointers) {
    StackHash hash;
    CONTEXT context = *pointers.ContextRecord;
    // NOLINTNEXTLINE(misc-redundant-expression): the bit of the processor is in both
    context.ContextFlags = CONTEXT_CONTROL | CONTEXT_INTEGER;
    STACKFRAME64 frame{};
    frame.AddrPC = {context.Eip, 0, AddrModeFlat};
    frame.AddrFrame = {context.Ebp, 0, AddrModeFlat};
    frame.AddrStack = {context.Esp, 0, AddrModeFlat};
    const HANDLE process = GetCurrentProcess();
    const HANDLE thread = GetCurrentThread();
    static_assert(sizeof(void*) == 4, "the walk reads the registers of a 32-bit process");
    const auto walk = lookUp<decltype(&StackWalk64)>(stackWalker(), "StackWalk64");
    // Each frame must be above the last one: a damaged chain could loop.
    for (DWORD64 below = 0;
         walk && walk(IMAGE_FILE_MACHINE_I386, process, thread, &frame, &context, nullptr, nullptr, nullptr, nullptr) &&
         frame.AddrStack.Offset >= below;
         below = frame.AddrStack.Offset + 1)
        hash.add(moduleNameAt(frame.AddrPC.Offset));
    return crashSignature(hash, reinterpret_cast<ULONG_PTR>(pointers.ExceptionRecord->ExceptionAddress));
}

}  // namespace pdx
