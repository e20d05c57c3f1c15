// Registry keys that keep their view, and their values as text or number.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <variant>

#include "platform/Handles.h"

namespace pdx {

/// One of the two registries of a 64-bit system; every value other than view64 means the 32-bit one.
enum RegistryView : int32_t {
    view32 = 0,
    view64 = 1,
};

/// The data of a value: nothing, a REG_DWORD, or a REG_SZ.
using RegistryValue = std::variant<std::monostate, uint32_t, std::wstring>;

using RegistryHandle = Owned<HKEY, RegCloseKey>;

/// An open key, or none after a failed open: then every further call fails without a log line. Throws only
/// std::bad_alloc.
class RegistryKey {
  public:
    /// No key.
    RegistryKey() noexcept = default;
    /// The predefined roots.
    static RegistryKey classesRoot(RegistryView view);
    static RegistryKey currentUser(RegistryView view);
    static RegistryKey localMachine(RegistryView view);

    /// A key below this one, in the same view. On failure the result is no key, and "Failed to open subkey %ls" or
    /// "Failed to create subkey %ls" is logged at ERROR.
    [[nodiscard]] RegistryKey openSubKey(const std::wstring& path, bool writable) const;
    RegistryKey createSubKey(const std::wstring& path, bool writable) const;

    /// A value of this key; the name "" means the key's default value. Returns defaultValue if there is none, or if it
    /// has more than 4094 bytes (a text of 2046 characters with its end mark). The same if it is neither REG_SZ nor
    /// REG_DWORD, which logs "Unsupported registry value type [%d]" at ERROR.
    [[nodiscard]] RegistryValue getValue(const std::wstring& name, RegistryValue defaultValue = {}) const;
    /// The same for a key below this one, opened for this read only.
    [[nodiscard]] RegistryValue getSubKeyValue(const std::wstring& subKey, const std::wstring& name,
                                               RegistryValue defaultValue = {}) const;

    /// Writes a number as REG_DWORD, a text as REG_SZ; false on failure. No value (monostate) is a failure and logs
    /// "Unsupported value type" at ERROR.
    bool setValue(const std::wstring& name, const RegistryValue& value);
    /// The same in a key below this one, which is made if missing.
    bool setSubKeyValue(const std::wstring& subKey, const std::wstring& name, const RegistryValue& value);

    /// Deletes a value of this key; true also if there was none. Logs nothing.
    bool deleteValue(const std::wstring& name);
    /// Deletes a key below this one with its subkeys, in this key's view; true also if there was none. Refuses the
    /// empty path, which would empty this key itself. Logs nothing.
    bool deleteTree(const std::wstring& path);
    /// Whether this key exists and has neither values nor subkeys.
    [[nodiscard]] bool isEmpty() const;

    /// Calls the function with this key and the name of each subkey, until it returns false. The walk is by index and
    /// is not restarted: if the function deletes its subkey, the next one is skipped.
    void enumerateSubKeys(const std::function<bool(RegistryKey& key, const std::wstring& name)>& function);

    /// For functions of the platform that have no counterpart here.
    [[nodiscard]] HKEY get() const noexcept { return handle.get(); }
    explicit operator bool() const noexcept { return static_cast<bool>(handle); }
    /// The access mask's flag for this key's view.
    [[nodiscard]] REGSAM viewFlag() const noexcept { return view == view64 ? KEY_WOW64_64KEY : KEY_WOW64_32KEY; }

  private:
    RegistryKey(HKEY key, RegistryView keyView) : handle(key), view(keyView) {}
    [[nodiscard]] REGSAM accessMask(bool writable) const noexcept;

    RegistryHandle handle;
    RegistryView view = view32;
};

/// A text unchanged, a number in decimal digits (0 becomes "0", which is not empty), otherwise the empty text.
std::wstring toText(const RegistryValue& value);
/// The same of a value below HKEY_LOCAL_MACHINE.
std::wstring machineText(RegistryView view, const std::wstring& key, const std::wstring& name);

}  // namespace pdx
