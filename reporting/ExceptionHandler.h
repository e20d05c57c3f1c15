// Last-chance filter: reports the crash, shows one box, chains to the earlier filter.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/Lock.h"
#include "platform/ServiceHolder.h"
#include "platform/Task.h"

namespace pdx {

/// Shows a message and waits until the user has closed it.
using CrashBox = std::function<void(const std::wstring& text, const std::wstring& caption)>;

/// The process's filter of unhandled exceptions during the object's life. One process reports one crash: the event is
/// queued, then the box is shown, then the earlier filter runs.
class ExceptionHandler {
  public:
    /// Replaces the current filter, and chains to it unless it belongs to another handler of the library.
    explicit ExceptionHandler(CrashBox showBox = showCrashBox);
    /// Puts the earlier filter back.
    ~ExceptionHandler();
    ExceptionHandler(const ExceptionHandler&) = delete;
    ExceptionHandler& operator=(const ExceptionHandler&) = delete;

    /// Runs on the thread that faulted. The first fatal exception sends the event "erro.crit.cras" and shows the box;
    /// one on another thread waits until the box is closed. Returns the earlier filter's result, or
    /// EXCEPTION_CONTINUE_SEARCH without an earlier filter.
    LONG filter(EXCEPTION_POINTERS* pointers);

    /// A message box without an owner.
    static void showCrashBox(const std::wstring& text, const std::wstring& caption);

  private:
    void report(const EXCEPTION_POINTERS& pointers);

    LPTOP_LEVEL_EXCEPTION_FILTER previousFilter = nullptr;
    /// Recursive: a fault in report() calls the filter again on the same thread, which then finds `handled` set.
    RecursiveLock lock;
    bool handled = false;
    CrashBox box;
};

/// Loads the library that a crash's signature needs, so that a crashing process need not. Takes some milliseconds.
void loadStackWalker();

/// The handler, null until the application object has made it.
extern ServiceHolder<ExceptionHandler> g_exceptionHandler;

/// Sets a handler for an object's life. First destroys the handler left from before a reload, so that the new one
/// chains to the filter that was set before either.
class ExceptionHandlerLife : public ServiceLife<ExceptionHandler> {
  public:
    ExceptionHandlerLife() : ServiceLife(g_exceptionHandler, makeNext()), preparation(loadStackWalker) {}

  private:
    static std::shared_ptr<ExceptionHandler> makeNext() {
        g_exceptionHandler.clear();
        return std::make_shared<ExceptionHandler>();
    }

    Task preparation;  ///< for a crash; only the destructor waits for it
};

/// The signature of the crash (reporting/rules/CrashSignature.h), by a walk of the thread's frame pointers.
std::string signatureOf(const EXCEPTION_POINTERS& pointers);

}  // namespace pdx
