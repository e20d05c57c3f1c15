// A lock that owns nothing of the system, so that it may be a static of a library that is unloaded and loaded again.
// (std::mutex of the MinGW runtime makes a kernel object on contention and never frees it.)
#pragma once

#include <windows.h>

#include <chrono>

namespace pdx {

/// For std::lock_guard and std::unique_lock. Not recursive; works from the first instruction of the process to the
/// last.
class Lock {
  public:
    constexpr Lock() noexcept = default;
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    void lock() noexcept { AcquireSRWLockExclusive(&slim); }
    /// False if it is not free within about that time: for a thread that may hold it itself, for it has crashed.
    bool try_lock_for(std::chrono::milliseconds bound) noexcept {
        const ULONGLONG begin = GetTickCount64();
        while (!TryAcquireSRWLockExclusive(&slim)) {
            if (GetTickCount64() - begin >= static_cast<ULONGLONG>(bound.count())) return false;
            Sleep(1);  // a lock of this kind cannot be waited for with a bound
        }
        return true;
    }
    void unlock() noexcept { ReleaseSRWLockExclusive(&slim); }

  private:
    SRWLOCK slim = SRWLOCK_INIT;
};

/// The same, but recursive: a thread that shows a message box while it holds the lock may take it again.
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
