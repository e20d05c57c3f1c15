// A management service with a test's answers, in place of the system's.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/Text.h"
#include "platform/Wmi.h"

namespace pdx {

using ScriptedRow = std::map<std::wstring, WmiValue, LessIgnoreCase>;
using ScriptedAnswers = std::map<std::wstring, std::vector<ScriptedRow>>;

inline WmiValue wmiText(std::wstring text) { return {WmiValue::Kind::text, std::move(text), 0}; }
inline WmiValue wmiNumber(int32_t number) { return {WmiValue::Kind::number, {}, number}; }
inline WmiValue wmiNull() { return {WmiValue::Kind::null, {}, 0}; }

/// A namespace that has answers by query; an unknown one fails.
class ScriptedServices : public WmiServices {
  public:
    explicit ScriptedServices(ScriptedAnswers given) : answers(std::move(given)) {}
    HRESULT forEachRow(const std::wstring& query, const std::function<bool(const WmiRow& row)>& function) override {
        const auto found = answers.find(query);
        if (found == answers.end()) return static_cast<HRESULT>(0x80041017);
        for (const ScriptedRow& row : found->second) {
            const auto property = [&](const wchar_t* name) {
                const auto value = row.find(name);
                return value == row.end() ? WmiValue() : value->second;
            };
            if (!function(property)) break;
        }
        return S_OK;
    }

  private:
    ScriptedAnswers answers;
};

inline WmiConnection answering(ScriptedAnswers answers = {}) {
    return {std::make_shared<ScriptedServices>(std::move(answers)), WmiConnection::Step::setProxy, S_OK};
}

/// A service with these namespaces; an unknown one cannot be connected to.
inline ConnectWmi scriptedWmi(std::map<std::wstring, WmiConnection> namespaces) {
    return [namespaces = std::move(namespaces)](const std::wstring& name) {
        const auto found = namespaces.find(name);
        const WmiConnection none = {nullptr, WmiConnection::Step::connect, static_cast<HRESULT>(0x8004100e)};
        return found == namespaces.end() ? none : found->second;
    };
}

}  // namespace pdx
