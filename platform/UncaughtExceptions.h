// How an uncaught C++ exception becomes a crash.
#pragma once

#include <windows.h>

#include <utility>

namespace pdx {

/// The structured exception for an uncaught C++ exception: severity error, customer code.
inline constexpr DWORD uncaughtExceptionCode = 0xE0504458;

/// Installs a terminate handler that causes the exception uncaughtExceptionCode. The toolchain's handler would end the
/// process without calling the filter of unhandled exceptions. May be called repeatedly, on any thread.
void installTerminateHandler();

/// Runs a step whose exceptions count as crashes: the guards of callbacks and window messages do not catch them. Access
/// violations are never caught, so they need no such step.
template <typename Step>
decltype(auto) crashOnException(Step&& step) noexcept {
    return std::forward<Step>(step)();
}

}  // namespace pdx
