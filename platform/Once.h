// Work that is done once a process.
#pragma once

#include <mutex>

#include "platform/Lock.h"

namespace pdx {

/// Done by the first thread, while others wait. Owns nothing of the system and has no destructor; the toolchain never
/// frees what a guarded static of the language waits with.
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
