// The object that the engine gets in place of the application: the same callbacks, which let no exception out.
#pragma once

#include "core/engine/BaseApplication.h"

namespace pdx {

/// Puts a guard between the engine and the application, whose reference it takes over. The guard is deleted with the
/// application's last reference. Null gives null.
///
/// An exception in a callback is logged at ERROR and updates the run's status with E_OUTOFMEMORY or E_FAIL. The engine
/// gets the callback's default answer. Two kinds of failure would leave the run hanging, so they end it. OnStartup
/// answers E_FAIL. After OnDetectComplete, OnPlanComplete and OnApplyComplete the engine is asked to quit. Access
/// violations and exceptions under crashOnException are not caught.
IBootstrapperApplication* guardCallbacks(CBalBaseBootstrapperApplication* application);

}  // namespace pdx
