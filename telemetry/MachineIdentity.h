// What identifies a machine without naming it.
#pragma once

#include <string>

#include "platform/Wmi.h"

namespace pdx {

/// 40 lower-case hexadecimal digits: the SHA-1 of facts about the hardware, the same on every call on one machine.
/// A fact that is missing counts as a fixed text, so this works without WMI too; the empty text only if the system
/// cannot hash. Runs on any thread, waits for five queries on each call, logs nothing.
std::string getMachineHash();

/// The same by another management service.
std::string machineHashBy(const ConnectWmi& connect);

}  // namespace pdx
