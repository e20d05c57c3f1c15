#include "platform/Registry.h"

#include <cstring>
#include <iterator>

#include "platform/Log.h"
#include "platform/rules/SubKeyWalk.h"

namespace pdx {
namespace {

/// Counts of a key's subkeys and values; both 0 on failure.
struct KeyContent {
    explicit KeyContent(HKEY key) {
        isKnown = RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &subKeys, nullptr, nullptr, &values, nullptr,
                                   nullptr, nullptr, nullptr) == ERROR_SUCCESS;
    }
    bool isKnown;
    DWORD subKeys = 0;
    DWORD values = 0;
};

}  // namespace

RegistryKey RegistryKey::classesRoot(RegistryView view) { return {HKEY_CLASSES_ROOT, view}; }
RegistryKey RegistryKey::currentUser(RegistryView view) { return {HKEY_CURRENT_USER, view}; }
RegistryKey RegistryKey::localMachine(RegistryView view) { return {HKEY_LOCAL_MACHINE, view}; }

REGSAM RegistryKey::accessMask(bool writable) const noexcept {
    return (writable ? KEY_ALL_ACCESS : KEY_READ) | viewFlag();
}

RegistryKey RegistryKey::openSubKey(const std::wstring& path, bool writable) const {
    RegistryKey subKey(nullptr, view);
    if (handle && RegOpenKeyExW(get(), path.c_str(), 0, accessMask(writable), subKey.handle.put()) != ERROR_SUCCESS)
        PDX_LOG(logError, "RegistryKey::openSubKey", "Failed to open subkey %ls", path);
    return subKey;
}

RegistryKey RegistryKey::createSubKey(const std::wstring& path, bool writable) const {
    RegistryKey subKey(nullptr, view);
    if (handle && RegCreateKeyExW(get(), path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, accessMask(writable),
                                  nullptr, subKey.handle.put(), nullptr) != ERROR_SUCCESS)
        PDX_LOG(logError, "RegistryKey::createSubKey", "Failed to create subkey %ls", path);
    return subKey;
}

RegistryValue RegistryKey::getValue(const std::wstring& name, RegistryValue defaultValue) const {
    // The last character stays zero, so that a text stored without its end mark ends.
    wchar_t buffer[2048]{};
    DWORD size = sizeof buffer - sizeof(wchar_t);
    DWORD type = REG_NONE;
    if (!handle ||
        RegQueryValueExW(get(), name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(buffer), &size) != ERROR_SUCCESS)
        return defaultValue;
    if (type == REG_SZ) return std::wstring(buffer);
    if (type == REG_DWORD) {
        uint32_t number = 0;
        std::memcpy(&number, buffer, sizeof number);
        return number;
    }
    PDX_LOG(logError, "RegistryKey::getValue", "Unsupported registry value type [%d]", static_cast<int32_t>(type));
    return defaultValue;
}

RegistryValue RegistryKey::getSubKeyValue(const std::wstring& subKey, const std::wstring& name,
                                          RegistryValue defaultValue) const {
    return openSubKey(subKey, false).getValue(name, std::move(defaultValue));
}

bool RegistryKey::setValue(const std::wstring& name, const RegistryValue& value) {
    if (!handle) return false;
    const auto write = [&](DWORD type, const void* bytes, size_t size) {
        return RegSetValueExW(get(), name.c_str(), 0, type, static_cast<const BYTE*>(bytes),
                              static_cast<DWORD>(size)) == ERROR_SUCCESS;
    };
    if (const auto* number = std::get_if<uint32_t>(&value)) return write(REG_DWORD, number, sizeof *number);
    if (const auto* text = std::get_if<std::wstring>(&value))
        return write(REG_SZ, text->c_str(), (text->size() + 1) * sizeof(wchar_t));
    PDX_LOG(logError, "RegistryKey::setValue", "Unsupported value type");
    return false;
}

bool RegistryKey::setSubKeyValue(const std::wstring& subKey, const std::wstring& name, const RegistryValue& value) {
    return createSubKey(subKey, true).setValue(name, value);
}

bool RegistryKey::deleteValue(const std::wstring& name) {
    if (!handle) return false;
    const LSTATUS error = RegDeleteValueW(get(), name.c_str());
    return error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND;
}

bool RegistryKey::deleteTree(const std::wstring& path) {
    if (!handle || path.empty()) return false;
    // The system's function has no view parameter: below a predefined root it would use the process's view. A key that
    // was opened in a view keeps it. So the key is opened, emptied, and then deleted by the function with a view
    // parameter.
    RegistryHandle tree;
    const LSTATUS opened = RegOpenKeyExW(get(), path.c_str(), 0, accessMask(true), tree.put());
    if (opened != ERROR_SUCCESS) return opened == ERROR_FILE_NOT_FOUND;
    if (RegDeleteTreeW(tree.get(), nullptr) != ERROR_SUCCESS) return false;
    tree.reset();
    const LSTATUS error = RegDeleteKeyExW(get(), path.c_str(), viewFlag(), 0);
    return error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND;
}

bool RegistryKey::isEmpty() const {
    if (!handle) return false;
    const KeyContent content(get());
    return content.isKnown && content.subKeys == 0 && content.values == 0;
}

void RegistryKey::enumerateSubKeys(const std::function<bool(RegistryKey& key, const std::wstring& name)>& function) {
    walkSubKeys(
        [this](uint32_t index) {
            wchar_t name[260]{};
            auto size = static_cast<DWORD>(std::size(name));
            const LSTATUS error = RegEnumKeyExW(get(), index, name, &size, nullptr, nullptr, nullptr, nullptr);
            // Without this the walk over a key that was deleted meanwhile would try all 32-bit indices.
            if (error != ERROR_SUCCESS && index >= KeyContent(get()).subKeys)
                return SubKeyAnswer{ERROR_NO_MORE_ITEMS, {}};
            return SubKeyAnswer{error, name};
        },
        [&](const std::wstring& name) { return function(*this, name); });
}

std::wstring toText(const RegistryValue& value) {
    if (const auto* text = std::get_if<std::wstring>(&value)) return *text;
    if (const auto* number = std::get_if<uint32_t>(&value)) return std::to_wstring(*number);
    return {};
}

std::wstring machineText(RegistryView view, const std::wstring& key, const std::wstring& name) {
    return toText(RegistryKey::localMachine(view).getSubKeyValue(key, name));
}

}  // namespace pdx
