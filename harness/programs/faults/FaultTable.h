// The platform's functions that a fault sweep lets fail, each with the failure that is typical of it.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>

namespace pdx {

struct PlatformFault {
    const char* function;
    uint32_t stackBytes;  ///< what the function takes off the stack
    uint32_t result;      ///< of the failed call
    DWORD error;          ///< the last error of the failed call
    uint32_t output = 0;  ///< the argument, counted from 1, through which a failed call writes a null; 0: none
    DWORD slow = 0;       ///< milliseconds that a slow call of it takes; 0: it is never slow
};

std::span<const PlatformFault> platformFaults();

}  // namespace pdx
