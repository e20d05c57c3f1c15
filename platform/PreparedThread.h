// A thread that starts before there is work for it.
#pragma once

#include <exception>
#include <functional>

#include "platform/Thread.h"

namespace pdx {

/// A thread that prepares its work while others are busy: system structures for each thread, and objects that only this
/// thread may use. All calls on the owner's thread.
class PreparedThread {
  public:
    PreparedThread() : routineGiven(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}
    /// Ends and joins a thread that was given no routine. A thread with a routine must have been joined before.
    ~PreparedThread() {
        SetEvent(routineGiven.get());
        thread.join();
    }
    PreparedThread(const PreparedThread&) = delete;
    PreparedThread& operator=(const PreparedThread&) = delete;

    /// Starts the thread with a preparation, which must end. An exception ends the preparation; the thread then waits
    /// for its routine. If no thread can be made, start() tries again.
    void prepare(std::function<void()> work) {
        preparation = std::move(work);
        // Without the event the thread would not wait for its routine.
        if (routineGiven) thread.start(run, this);
    }
    /// Runs the routine after the preparation, if any; false if no thread can be made.
    bool start(Thread::Routine given, void* itsArgument) {
        routine = given;
        argument = itsArgument;
        SetEvent(routineGiven.get());
        return thread.id() != 0 || thread.start(run, this);
    }
    /// 0 until start() has given the routine.
    [[nodiscard]] DWORD id() const { return routine ? thread.id() : 0; }
    [[nodiscard]] bool endsWithin(DWORD bound) const { return thread.endsWithin(bound); }
    void join() { thread.join(); }

  private:
    static unsigned __stdcall run(void* object) noexcept {
        auto& self = *static_cast<PreparedThread*>(object);
        try {
            if (self.preparation) self.preparation();
        } catch (const std::exception&) {
            // Out of memory: the routine runs without a full preparation.
        }
        WaitForSingleObject(self.routineGiven.get(), INFINITE);
        return self.routine ? self.routine(self.argument) : 0;
    }

    std::function<void()> preparation;
    Thread::Routine routine = nullptr;
    void* argument = nullptr;
    Handle routineGiven;
    Thread thread;
};

}  // namespace pdx
