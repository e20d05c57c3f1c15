// The system's management service (WMI): connecting to a namespace, and the rows of a query.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include <wbemidl.h>

#include "platform/ComPtr.h"
#include "platform/rules/WmiValue.h"

namespace pdx {

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
