// Work that is done once for the process.
#pragma once

#include <mutex>

#include "platform/Lock.h"

namespace pdx {

/// The first thread does the work, while others wait. Has no system object and no destructor, unlike a guarded local
/// static, whose wait object the toolchain never frees. For first calls that threads regularly make at once; elsewhere
/// a local static will do.
class Once {
  public:
    constexpr Once() noexcept = default;
    /// The work must not call this again; if it throws, the next caller tries again.
    template <typename Work>
    void run(Work work) {
        const std::lock_guard guard(lock);
        if (done) return;
        work();
        done = true;
    }

  private:
    Lock lock;
    bool done = false;
};

}  // namespace pdx
