// What is done once a process.
#pragma once

#include <mutex>

#include "platform/Lock.h"

namespace pdx {

/// Done by the first thread that comes, while others wait. Owns nothing of the system and has no destructor; what a
/// guarded static of the language waits with, the toolchain never frees.
class Once {
  public:
    constexpr Once() noexcept = default;
    /// The work must not come back here; if it throws, the next who comes tries again.
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
