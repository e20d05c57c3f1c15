// A management service that answers as a test says, in the place of the system's.
#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/rules/WmiValue.h"

namespace pdx {

struct IgnoreCase {
    bool operator()(const std::wstring& left, const std::wstring& right) const {
        return _wcsicmp(left.c_str(), right.c_str()) < 0;
    }
};
using ScriptedRow = std::map<std::wstring, WmiValue, IgnoreCase>;

inline WmiValue wmiText(std::wstring text) { return {WmiValue::Kind::text, std::move(text), 0}; }
inline WmiValue wmiNumber(int32_t number) { return {WmiValue::Kind::number, {}, number}; }
inline WmiValue wmiNull() { return {WmiValue::Kind::null, {}, 0}; }

struct ScriptedNamespace {
    HRESULT connected = S_OK;
    HRESULT proxySet = S_OK;
    /// By query; an unknown one fails.
    std::map<std::wstring, std::vector<ScriptedRow>> answers;
};

struct WmiScript {
    HRESULT locatorCreated = S_OK;
    std::map<std::wstring, ScriptedNamespace> namespaces;  ///< an unknown one cannot be connected to
    std::vector<std::wstring> asked;                       ///< "namespace: query"
    int living = 0;                                        ///< objects that nobody has given back
};

/// Takes the system's place for this thread, which has an apartment of its own, while it lives; expects at its end that
/// every object was given back.
class ScriptedWmi {
  public:
    ScriptedWmi();
    ScriptedWmi(const ScriptedWmi&) = delete;
    ScriptedWmi& operator=(const ScriptedWmi&) = delete;
    ~ScriptedWmi();
    WmiScript* operator->() { return &script; }
    ScriptedNamespace& operator[](const wchar_t* nameSpace) { return script.namespaces[nameSpace]; }

  private:
    WmiScript script;
    DWORD cookie = 0;
};

}  // namespace pdx
