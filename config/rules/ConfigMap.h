// All settings of the installer: one flat map of dotted keys, filled once at the start and only read afterwards.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace cpptoml {
class base;
}

namespace pdx {

/// Values by key, as the TOML library holds them: text, 64-bit integer, floating number or boolean. Keys are compared
/// without regard to case. A type is never converted: the text "true" is no boolean, and an integer read as text gives
/// the default.
class ConfigMap {
  public:
    /// The text of a key (UTF-8); the default if the key is absent or holds no text.
    [[nodiscard]] std::string getString(std::string_view key, std::string_view defaultText = {}) const;
    /// The same as wide text.
    [[nodiscard]] std::wstring getWideString(std::string_view key, std::wstring_view defaultText = {}) const;
    /// The boolean of a key; the default if the key is absent or holds no boolean.
    [[nodiscard]] bool getBool(std::string_view key, bool defaultValue) const;

    /// Inserts or replaces. A null value counts as absent.
    void set(std::string_view key, std::shared_ptr<cpptoml::base> value);
    /// Inserts or replaces every entry of the other map.
    void merge(const ConfigMap& other);

    [[nodiscard]] size_t size() const { return values.size(); }

  private:
    [[nodiscard]] const std::string* findText(std::string_view key) const;

    std::unordered_map<std::string, std::shared_ptr<cpptoml::base>> values;
};

}  // namespace pdx
