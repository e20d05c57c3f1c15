#include "platform/MemoryReserve.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace pdx {
namespace {

constexpr size_t reserveSize = 128 * 1024;
constinit std::atomic<void*> reserve = nullptr;

void freeReserve() {
    void* const kept = reserve.exchange(nullptr);
    if (!kept) throw std::bad_alloc();
    std::free(kept);
}

}  // namespace

void keepMemoryReserve() {
    if (!reserve.load()) std::free(reserve.exchange(std::malloc(reserveSize)));
    std::set_new_handler(freeReserve);
}

void releaseMemoryReserve() {
    std::set_new_handler(nullptr);
    std::free(reserve.exchange(nullptr));
}

}  // namespace pdx
