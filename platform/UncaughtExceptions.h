// The way of a fault that nothing is to catch into the handling of crashes.
#pragma once

#include <windows.h>

#include <utility>

namespace pdx {

/// The structured exception that stands for a C++ exception which nobody catches: severity error, of the program's own.
inline constexpr DWORD uncaughtExceptionCode = 0xE0504458;

/// Makes std::terminate raise uncaughtExceptionCode where it is called, for with this toolchain it would end the process
/// past the filter of unhandled exceptions. Of no further effect when called again. Any thread.
void raiseUncaughtExceptions();

/// Runs a step in which an exception is to end in the handling of crashes: the guards of the engine's callbacks and of
/// window messages, which keep every other exception from their callers, never see it. An access fault passes them by
/// itself.
template <typename Step>
decltype(auto) crashOnException(Step&& step) noexcept {
    return std::forward<Step>(step)();
}

}  // namespace pdx
