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

    /// The result of CoInitializeEx, by default for a single-threaded apartment. Started once; asked again, it gives
    /// the first result.
    HRESULT start(DWORD kind = COINIT_APARTMENTTHREADED) noexcept {
        if (result == notStarted) result = CoInitializeEx(nullptr, kind);
        return result;
    }
    /// Also on a thread that somebody has given another kind of apartment.
    [[nodiscard]] bool usable() const noexcept { return SUCCEEDED(result) || result == RPC_E_CHANGED_MODE; }

  private:
    static constexpr HRESULT notStarted = static_cast<HRESULT>(0x8007139F);  // ERROR_INVALID_STATE
    HRESULT result = notStarted;
};

}  // namespace pdx
