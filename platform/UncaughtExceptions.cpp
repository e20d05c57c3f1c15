#include "platform/UncaughtExceptions.h"

#include <cstdlib>
#include <exception>

namespace pdx {

void installTerminateHandler() {
    std::set_terminate([] {
        RaiseException(uncaughtExceptionCode, EXCEPTION_NONCONTINUABLE, 0, nullptr);
        std::abort();
    });
}

}  // namespace pdx
