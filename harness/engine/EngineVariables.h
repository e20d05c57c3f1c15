// The bundle variables of the small engine and the texts that refer to them.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/Lock.h"

namespace pdx {

/// Variables by name, which regards case as the engine's do. Any thread may call; each call is whole.
class EngineVariables {
  public:
    /// Four 16-bit numbers, the major one highest.
    struct Version {
        uint64_t value;
    };
    using Value = std::variant<int64_t, std::wstring, Version>;

    void set(std::wstring_view name, Value value);
    void erase(std::wstring_view name);
    [[nodiscard]] std::optional<Value> get(std::wstring_view name) const;
    /// The value as text: a number in decimal, a version as "1.2.3.4".
    [[nodiscard]] std::optional<std::wstring> text(std::wstring_view name) const;

    /// The text with each "[Name]" replaced by the variable's value, which is formatted in turn, and each "[\x]" by the
    /// character x. A variable that is not there leaves nothing; "[" without "]" and "[]" stay as they are.
    /// Unlike in the engine braces mean nothing: there "{...}" goes as a whole if a reference in it is empty.
    [[nodiscard]] std::wstring format(std::wstring_view text) const;
    /// The text with "[", "]", "{" and "}" written so that format gives them back.
    [[nodiscard]] static std::wstring escape(std::wstring_view text);

  private:
    [[nodiscard]] std::wstring format(std::wstring_view text, int depth) const;

    mutable Lock lock;
    std::map<std::wstring, Value, std::less<>> values;
};

}  // namespace pdx
