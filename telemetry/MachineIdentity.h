// The anonymous identity of a machine.
#pragma once

#include <string>

#include "platform/Wmi.h"

namespace pdx {

/// 40 lower-case hexadecimal digits: the SHA-1 of facts about the hardware, the same on every call on one machine.
/// A missing fact is replaced by a fixed text, so this works without WMI too. Empty only if hashing fails. Any thread;
/// waits for five queries on each call, logs nothing.
std::string getMachineHash();

/// The same with another WMI connection.
std::string machineHashBy(const ConnectWmi& connect);

}  // namespace pdx
