// The system's management service (WMI): connecting to a namespace, and the rows of a query.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/rules/WmiValue.h"

namespace pdx {

/// The namespace of the operating system and the machine.
inline constexpr const wchar_t* generalNamespace = L"ROOT\\CIMV2";

/// A row of a result: returns a property by its name, a text up to its first zero.
using WmiRow = std::function<WmiValue(const wchar_t* name)>;

/// A connection to a namespace.
class WmiServices {
  public:
    virtual ~WmiServices() = default;
    /// Runs the WQL query and calls the function with each row until it returns false. Waits for the service without
    /// limit. Returns the result of starting the query; throws std::bad_alloc if there is no memory for its text.
    virtual HRESULT forEachRow(const std::wstring& query, const std::function<bool(const WmiRow& row)>& function) = 0;
};

struct WmiConnection {
    enum class Step { createLocator, connect, setProxy };
    std::shared_ptr<WmiServices> services;  ///< null if a step failed
    Step lastStep = Step::createLocator;
    HRESULT result = E_FAIL;  ///< of the last step
};

/// Connects to a namespace such as "ROOT\CIMV2" as the current user. Needs COM on this thread. Logs nothing.
WmiConnection connectWmi(const std::wstring& nameSpace);
using ConnectWmi = std::function<WmiConnection(const std::wstring& nameSpace)>;

}  // namespace pdx
