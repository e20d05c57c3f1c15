// How an exception that nothing may catch reaches the handling of crashes.
#pragma once

#include <windows.h>

#include <utility>

namespace pdx {

/// The structured exception for an uncaught C++ exception: severity error, customer code.
inline constexpr DWORD uncaughtExceptionCode = 0xE0504458;

/// Installs a terminate handler that raises uncaughtExceptionCode: this toolchain's own would end the process past the
/// filter of unhandled exceptions. Has no further effect when called again. Any thread.
void installTerminateHandler();

/// Runs a step whose exceptions are crashes. The guards of the engine's callbacks and of window messages keep every
/// other exception from their callers, but do not see these. Access violations need no such step.
template <typename Step>
decltype(auto) crashOnException(Step&& step) noexcept {
    return std::forward<Step>(step)();
}

}  // namespace pdx
