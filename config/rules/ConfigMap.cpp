#include "config/rules/ConfigMap.h"

#include <cpptoml.h>

#include <utility>

#include "platform/rules/AsciiCase.h"
#include "platform/rules/Utf8.h"

namespace pdx {
namespace {

/// The value if it has exactly this type, else null. The library's as() would convert a whole number to a floating one.
template <typename Type>
const Type* held(const std::shared_ptr<cpptoml::base>& node) {
    const auto* value = dynamic_cast<const cpptoml::value<Type>*>(node.get());
    return value ? &value->get() : nullptr;
}

}  // namespace

const std::string* ConfigMap::findText(std::string_view key) const {
    const auto entry = values.find(loweredAscii<char>(key));
    return entry == values.end() ? nullptr : held<std::string>(entry->second);
}

std::string ConfigMap::getString(std::string_view key, std::string_view defaultText) const {
    const std::string* text = findText(key);
    return text ? *text : std::string(defaultText);
}

std::wstring ConfigMap::getWideString(std::string_view key, std::wstring_view defaultText) const {
    const std::string* text = findText(key);
    return text ? toWide(*text) : std::wstring(defaultText);
}

bool ConfigMap::getBool(std::string_view key, bool defaultValue) const {
    const auto entry = values.find(loweredAscii<char>(key));
    const bool* value = entry == values.end() ? nullptr : held<bool>(entry->second);
    return value ? *value : defaultValue;
}

void ConfigMap::set(std::string_view key, std::shared_ptr<cpptoml::base> value) {
    values.insert_or_assign(loweredAscii<char>(key), std::move(value));
}

void ConfigMap::merge(const ConfigMap& other) {
    for (const auto& [key, value] : other.values) values.insert_or_assign(key, value);
}

}  // namespace pdx
