// The holder of a process-wide service.
#pragma once

#include <chrono>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/Lock.h"

namespace pdx {

/// A shared pointer that any thread may read while another replaces it. It has no destructor on purpose. After a reload
/// the library stays pinned, and its statics are destroyed at the end of the process. By then all other threads were
/// ended anywhere in their work, and a lock or a service may be in any state. An ordinary unload calls clear() instead.
template <typename Service>
class ProcessSlot {
  public:
    constexpr ProcessSlot() noexcept = default;
    ProcessSlot(const ProcessSlot&) = delete;
    ProcessSlot& operator=(const ProcessSlot&) = delete;

    /// The service, which stays alive as long as the caller holds it; null if there is none.
    [[nodiscard]] std::shared_ptr<Service> get() const {
        const std::lock_guard guard(lock);
        return service ? *service : nullptr;
    }

    /// The same; null too if the lock is not free within the bound.
    [[nodiscard]] std::shared_ptr<Service> get(std::chrono::milliseconds bound) const {
        const std::unique_lock guard(lock, bound);
        return guard && service ? *service : nullptr;
    }

    /// Puts a service in; the earlier one is destroyed when its last user releases it.
    void set(std::shared_ptr<Service> replacement) {
        auto* owner = replacement ? new std::shared_ptr<Service>(std::move(replacement)) : nullptr;
        {
            const std::lock_guard guard(lock);
            std::swap(service, owner);
        }
        delete owner;
    }
    void clear() { set(nullptr); }

  private:
    mutable Lock lock;
    std::shared_ptr<Service>* service = nullptr;
};

/// Puts a service into its slot and takes it out again in the destructor, unless there is another one by then.
template <typename Service>
class ServiceLife {
  public:
    ServiceLife(ProcessSlot<Service>& itsSlot, std::shared_ptr<Service> owned)
        : slot(itsSlot), service(std::move(owned)) {
        slot.set(service);
    }
    ~ServiceLife() {
        if (slot.get() == service) slot.clear();
    }
    ServiceLife(const ServiceLife&) = delete;
    ServiceLife& operator=(const ServiceLife&) = delete;

  private:
    ProcessSlot<Service>& slot;
    std::shared_ptr<Service> service;
};

}  // namespace pdx
