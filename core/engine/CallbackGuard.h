// What the engine holds in the application's place: the same callbacks, out of which no exception leaves.
#pragma once

#include "core/engine/BaseApplication.h"

namespace pdx {

/// Puts a guard between the engine and the application, whose reference it takes over; it goes with the application's
/// last reference, and so does not outlive it. Null takes and gives null.
///
/// An exception that leaves a callback is logged at ERROR, E_OUTOFMEMORY or E_FAIL is taken as the run's status, and
/// the engine is given the callback's default answer. Where that would leave a run standing still it ends instead:
/// OnStartup answers E_FAIL, and after the last callback of a phase, whose message would have driven the run on, the
/// engine is asked to quit. Access violations and what crashOnException runs are not caught.
IBootstrapperApplication* guardCallbacks(CBalBaseBootstrapperApplication* application);

}  // namespace pdx
