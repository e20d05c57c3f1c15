// A lock without a system object, so that it may be a static of a library that is unloaded and loaded again. std::mutex
// of the MinGW runtime makes a kernel object on contention and never frees it.
#pragma once

#include <windows.h>

#include <chrono>

namespace pdx {

/// For std::lock_guard and std::unique_lock. Not recursive; works before static construction and after static
/// destruction.
class Lock {
  public:
    constexpr Lock() noexcept = default;
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    void lock() noexcept { AcquireSRWLockExclusive(&slim); }
    /// False if the lock is not free within about that time. For a crashed thread, which may hold the lock itself.
    bool try_lock_for(std::chrono::milliseconds bound) noexcept {
        const ULONGLONG begin = GetTickCount64();
        while (!TryAcquireSRWLockExclusive(&slim)) {
            if (GetTickCount64() - begin >= static_cast<ULONGLONG>(bound.count())) return false;
            Sleep(1);  // the system has no timed wait for such a lock
        }
        return true;
    }
    void unlock() noexcept { ReleaseSRWLockExclusive(&slim); }

  private:
    SRWLOCK slim = SRWLOCK_INIT;
};

/// A recursive lock, for members only: unlike Lock it must not be a static. A thread that shows a message box under it
/// may take it again.
class RecursiveLock {
  public:
    RecursiveLock() noexcept { InitializeCriticalSection(&section); }
    ~RecursiveLock() { DeleteCriticalSection(&section); }
    RecursiveLock(const RecursiveLock&) = delete;
    RecursiveLock& operator=(const RecursiveLock&) = delete;
    void lock() noexcept { EnterCriticalSection(&section); }
    void unlock() noexcept { LeaveCriticalSection(&section); }

  private:
    CRITICAL_SECTION section;
};

}  // namespace pdx
