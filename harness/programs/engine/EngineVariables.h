// The bundle variables of the small engine and the texts that refer to them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Lock.h"

namespace pdx {

/// Variables by name, with regard to case as the engine's; a number is kept as its text. Any thread may call; each
/// call is whole.
class EngineVariables {
  public:
    void set(std::wstring_view name, std::wstring value);
    void erase(std::wstring_view name);
    [[nodiscard]] std::optional<std::wstring> text(std::wstring_view name) const;

    /// The text with each "[Name]" replaced by the variable's value, which is formatted in turn, and each "[\x]" by the
    /// character x. A variable that is not there leaves nothing; "[" without "]" and "[]" stay as they are.
    /// Unlike in the engine braces mean nothing: there "{...}" is removed as a whole if a reference in it is empty.
    [[nodiscard]] std::wstring format(std::wstring_view text) const;
    /// The text with "[", "]", "{" and "}" written so that format gives them back.
    [[nodiscard]] static std::wstring escape(std::wstring_view text);

  private:
    mutable Lock lock;
    std::map<std::wstring, std::wstring, std::less<>> values;
};

}  // namespace pdx
