// How the arguments of callbacks are written into log lines and into the context of an error.
#pragma once

#include <concepts>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <type_traits>

#include "core/engine/rules/EnumNames.h"
#include "platform/Engine.h"
#include "platform/Text.h"

namespace pdx {

/// UTF-8 of an argument; null counts as empty.
std::string contextText(LPCWSTR text);

/// "{:08x}" of a status.
std::string contextStatus(HRESULT hr);

// Types for arguments whose own type does not decide how they are written.
struct Status {
    HRESULT hr;
};
struct Version {
    DWORD64 value;  ///< four words of 16 bits, the highest first
};
struct TextList {
    DWORD count;
    const LPCWSTR* texts;
};
struct BoxStyle {
    UINT style;
};

/// The texts of a list, joined with ", "; a null one counts as empty.
std::wstring joinTexts(TextList list);

template <typename Type>
concept Enumeration = std::is_enum_v<Type>;
template <typename Type>
concept Number = std::integral<Type> && !std::same_as<Type, bool>;

/// One argument of a callback: "name=value" in its log line, and the value under a key in the context.
class Fact {
  public:
    // With a null key the argument is logged only.
    Fact(const char* argument, const char* contextKey, LPCWSTR text);
    /// Logs the system's message; the context gets contextStatus.
    Fact(const char* argument, const char* contextKey, Status status);
    Fact(const char* argument, const char* contextKey, Version version);
    /// Logs "[one, two]"; the context gets the list without the brackets.
    Fact(const char* argument, const char* contextKey, TextList list);
    Fact(const char* argument, const char* contextKey, BoxStyle style);
    template <std::same_as<bool> Bool>
    Fact(const char* argument, const char* contextKey, Bool value)
        : Fact(argument, contextKey, nameOfBool(value), value) {}
    template <Number Value>
    Fact(const char* argument, const char* contextKey, Value value)
        : Fact(argument, contextKey, std::to_string(value), value) {}
    template <Enumeration Value>
    Fact(const char* argument, const char* contextKey, Value value)
        : Fact(argument, contextKey, nameOf(value), static_cast<int32_t>(value)) {}
    /// The value that the pointer points to; the context gets 0 for null, which the engine never sends.
    template <Enumeration Value>
    Fact(const char* argument, const char* contextKey, const Value* value)
        : Fact(argument, contextKey, nameOfPointed(value), value ? static_cast<int32_t>(*value) : 0) {}

    const char* name;
    const char* key;
    std::string logged;
    nlohmann::json kept;

  private:
    Fact(const char* argument, const char* contextKey, const std::string& both)
        : Fact(argument, contextKey, both, both) {}
    Fact(const char* argument, const char* contextKey, std::string inLog, nlohmann::json inContext)
        : name(argument), key(contextKey), logged(std::move(inLog)), kept(std::move(inContext)) {}
};

/// "fInstalled=true, cPackages=3".
std::string lineOf(std::span<const Fact> facts);
/// The facts that have a key.
nlohmann::json contextOf(std::span<const Fact> facts);

}  // namespace pdx
