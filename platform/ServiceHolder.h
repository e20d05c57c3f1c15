// The holder of a process-wide service.
#pragma once

#include <chrono>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/Lock.h"

namespace pdx {

/// A shared pointer that any thread may read while another replaces it. It has no destructor on purpose. After a reload
/// the library stays pinned, and its statics are destroyed at the end of the process. By then the system has ended all
/// other threads, so a lock or a service may be in any state. An ordinary unload calls clear() instead.
template <typename Service>
class ServiceHolder {
  public:
    constexpr ServiceHolder() noexcept = default;
    ServiceHolder(const ServiceHolder&) = delete;
    ServiceHolder& operator=(const ServiceHolder&) = delete;

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

    /// Replaces the service; the earlier one is destroyed when its last user releases it.
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

/// Sets a service, and clears it in the destructor unless another has replaced it.
template <typename Service>
class ServiceLife {
  public:
    ServiceLife(ServiceHolder<Service>& itsHolder, std::shared_ptr<Service> owned)
        : holder(itsHolder), service(std::move(owned)) {
        holder.set(service);
    }
    ~ServiceLife() {
        if (holder.get() == service) holder.clear();
    }
    ServiceLife(const ServiceLife&) = delete;
    ServiceLife& operator=(const ServiceLife&) = delete;

  private:
    ServiceHolder<Service>& holder;
    std::shared_ptr<Service> service;
};

}  // namespace pdx
