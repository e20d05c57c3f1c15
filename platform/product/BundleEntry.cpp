#include "platform/product/BundleEntry.h"

#include "platform/product/RegistryPaths.h"

namespace pdx {

RegistryKey openBundleEntry(const std::wstring& providerKey) {
    // An empty key would mean the list of all entries, and one with a separator a key elsewhere.
    if (providerKey.empty() || providerKey.find(L'\\') != std::wstring::npos) return {};
    return RegistryKey::localMachine(view32).openSubKey(uninstallKey + (L'\\' + providerKey), true);
}

}  // namespace pdx
