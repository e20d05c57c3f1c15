// The system's management service (WMI): connecting to a namespace, and the rows of a query.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include <wbemidl.h>

#include "platform/ComPtr.h"
#include "platform/rules/WmiValue.h"

namespace pdx {

/// COM for the thread that starts it, until it goes; it stays on that thread.
class ComApartment {
  public:
    ComApartment() noexcept = default;
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
    ~ComApartment();

    /// The result of CoInitialize. Started once; asked again, it gives the first result.
    HRESULT start();
    /// Also on a thread that somebody has given another kind of apartment.
    [[nodiscard]] bool usable() const noexcept { return SUCCEEDED(result) || result == RPC_E_CHANGED_MODE; }

  private:
    static constexpr HRESULT notStarted = static_cast<HRESULT>(0x8007139F);  // ERROR_INVALID_STATE
    HRESULT result = notStarted;
};

struct WmiConnection {
    enum class Step { createLocator, connect, setProxy };
    ComPtr<IWbemServices> services;  ///< null if a step failed
    Step lastStep = Step::createLocator;
    HRESULT result = E_FAIL;  ///< of the last step
};

/// Connects to a namespace such as "ROOT\CIMV2" as the current user. Needs COM on this thread. Logs nothing.
WmiConnection connectWmi(const std::wstring& nameSpace);

/// Runs the WQL query and calls the function with each row until it returns false. Waits for the service without limit.
/// Returns the result of starting the query; throws std::system_error if there is no memory for its text.
HRESULT forEachRow(IWbemServices& services, const std::wstring& query,
                   const std::function<bool(IWbemClassObject& row)>& function);

/// The property of a row; a text up to its first zero.
WmiValue readProperty(IWbemClassObject& row, const wchar_t* name);

}  // namespace pdx
