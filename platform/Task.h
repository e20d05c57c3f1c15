// Work in parallel to the thread that needs its result.
#pragma once

#include <exception>
#include <functional>
#include <utility>

#include "platform/Thread.h"

namespace pdx {

/// Work on a thread of its own, which the constructor starts; where the system gives no thread, wait() does it. An
/// exception ends it. The object waits for its end, so the work has to have one.
class Task {
  public:
    explicit Task(std::function<void()> job) : work(std::move(job)) { waiting = !thread.start(run, this); }
    ~Task() { wait(); }
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;

    /// Until the work is done. One thread at a time.
    void wait() {
        if (std::exchange(waiting, false)) run(this);
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
    bool waiting = false;  ///< for somebody to do the work
};

}  // namespace pdx
