// COM on one thread.
#pragma once

#include <windows.h>

#include <objbase.h>

namespace pdx {

/// COM for the thread that starts it, until the destructor, which must run on that thread.
class ComApartment {
  public:
    ComApartment() noexcept = default;
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
    ~ComApartment() {
        if (SUCCEEDED(result)) CoUninitialize();
    }

    /// Returns the result of CoInitializeEx, by default for a single-threaded apartment. A further call returns the
    /// first result.
    HRESULT start(DWORD kind = COINIT_APARTMENTTHREADED) noexcept {
        if (result == notStarted) result = CoInitializeEx(nullptr, kind);
        return result;
    }
    /// True also on a thread that has another kind of apartment already.
    [[nodiscard]] bool usable() const noexcept { return SUCCEEDED(result) || result == RPC_E_CHANGED_MODE; }

  private:
    static constexpr HRESULT notStarted = static_cast<HRESULT>(0x8007139F);  // ERROR_INVALID_STATE
    HRESULT result = notStarted;
};

}  // namespace pdx
