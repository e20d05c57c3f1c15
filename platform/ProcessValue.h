// A value that is made once for the process.
#pragma once

#include <chrono>
#include <mutex>
#include <type_traits>
#include <utility>

#include "platform/Lock.h"

namespace pdx {

/// Made by the first thread that needs it, while others wait, and never changed. It has no destructor for the same
/// reason as ServiceHolder; an ordinary unload calls clear().
template <typename Value>
class ProcessValue {
  public:
    constexpr ProcessValue() noexcept = default;
    ProcessValue(const ProcessValue&) = delete;
    ProcessValue& operator=(const ProcessValue&) = delete;

    /// The maker must not call this again.
    template <typename Maker>
    const Value& get(Maker&& make) {
        const std::lock_guard guard(lock);
        return made(std::forward<Maker>(make));
    }
    /// The same; null if the lock is not free within the bound.
    template <typename Maker>
    const Value* get(Maker&& make, std::chrono::milliseconds bound) {
        const std::unique_lock guard(lock, bound);
        return guard ? &made(std::forward<Maker>(make)) : nullptr;
    }
    /// Only when the value is no longer used.
    void clear() {
        const std::lock_guard guard(lock);
        delete std::exchange(value, nullptr);
    }

  private:
    template <typename Maker>
    const Value& made(Maker&& make) {
        if (!value) value = new Value(std::forward<Maker>(make)());
        return *value;
    }

    Lock lock;
    const Value* value = nullptr;
};
static_assert(std::is_trivially_destructible_v<ProcessValue<int>>);

}  // namespace pdx
