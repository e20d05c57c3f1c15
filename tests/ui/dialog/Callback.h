// A callback of the engine that sends a message to the dialog from a thread of its own.
#pragma once

#include "core/BootstrapperApplication.h"

namespace pdx::testing_support {

struct Callback {
    /// Sends it so many times, with an argument that grows by one every 50 times.
    Callback(BootstrapperApplication& application, UINT number, int count = 1)
        : app(application), message(number), times(count) {
        thread.start(run, this);
    }
    Callback(const Callback&) = delete;
    Callback& operator=(const Callback&) = delete;
    ~Callback() { thread.join(); }
    static unsigned __stdcall run(void* argument) {
        auto& self = *static_cast<Callback*>(argument);
        for (int time = 0; time < self.times; ++time)
            self.answer = self.app.sendAppMessage(self.message, static_cast<WPARAM>(time / 50));
        SetEvent(self.answered.get());
        return 0;
    }
    [[nodiscard]] bool isHeld() const { return WaitForSingleObject(answered.get(), 50) == WAIT_TIMEOUT; }

    BootstrapperApplication& app;
    UINT message;
    int times;
    int answer = -1;
    Handle answered{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    Thread thread;
};

}  // namespace pdx::testing_support
