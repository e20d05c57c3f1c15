// Lets calls of a loaded library fail or take long, from outside: its imported functions are led through counters.
#pragma once

#include <windows.h>

#include <atomic>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "harness/programs/faults/FaultTable.h"

namespace pdx {

/// Which calls of which function fail.
struct Injection {
    static constexpr unsigned every = 0;
    std::string function;   ///< of the platform, or an operation of the engine; empty: none
    unsigned call = every;  ///< from 1, or every
    bool slow = false;      ///< the call succeeds, but takes its time
};

/// The calls of one round. One object at a time; it must outlive the library's code.
class ImportHook {
  public:
    ImportHook();
    ImportHook(const ImportHook&) = delete;
    ImportHook& operator=(const ImportHook&) = delete;
    ~ImportHook();

    /// Changes the library's table of imports. What it asks for by name later, delayed imports too, is led here as
    /// well.
    void attach(HMODULE library);
    /// From now on calls are counted, and those of the injection fail.
    void arm(const Injection& chosen);
    void disarm() { armed = false; }

    /// The same for what is not imported: counts a call, and whether it has to fail.
    bool refuses(const char* name);

    [[nodiscard]] std::map<std::string, unsigned> counts() const;
    [[nodiscard]] unsigned injected() const { return injectedCalls; }

  private:
    struct Route {
        const PlatformFault* fault;
        void* original = nullptr;
        void* entry = nullptr;    ///< what the library calls
        void* failure = nullptr;  ///< what fails in the function's place
        std::atomic<unsigned> calls = 0;
    };
    bool falls(std::atomic<unsigned>& calls, std::string_view name);
    static void* choose(Route* route);
    static FARPROC WINAPI findByName(HMODULE library, LPCSTR name);
    Route* routeOf(std::string_view name);
    void writeCode(Route& route, unsigned char* at);

    static ImportHook* current;
    std::vector<Route> routes;
    std::map<std::string, std::atomic<unsigned>, std::less<>> operations;
    unsigned char* code;
    Injection injection;
    std::atomic<bool> armed = false;
    std::atomic<unsigned> injectedCalls = 0;
};

}  // namespace pdx
