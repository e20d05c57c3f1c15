// Work in parallel with the thread that needs its result.
#pragma once

#include <exception>
#include <functional>
#include <utility>

#include "platform/Thread.h"

namespace pdx {

/// Work on a separate thread, which the constructor starts; if no thread can be made, wait() does the work. An
/// exception ends the work. The destructor waits, so the work must end.
class Task {
  public:
    explicit Task(std::function<void()> job) : work(std::move(job)) { pending = !thread.start(run, this); }
    ~Task() { wait(); }
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;

    /// Waits until the work has ended. One thread at a time.
    void wait() {
        if (std::exchange(pending, false)) run(this);
        thread.join();
    }

  private:
    static unsigned __stdcall run(void* task) noexcept {
        try {
            static_cast<Task*>(task)->work();
        } catch (const std::exception&) {
            // Out of memory: there is no result.
        }
        return 0;
    }

    std::function<void()> work;
    Thread thread;
    bool pending = false;  ///< the work has not been started
};

}  // namespace pdx
