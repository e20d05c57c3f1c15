#include "state/InstallInfo.h"

#include "platform/Log.h"
#include "platform/product/ClientPackage.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Text.h"

namespace pdx {
namespace {

constexpr const wchar_t* userDataKey = L"Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\S-1-5-18\\";

/// A key of records, and the value that identifies this product's.
struct RecordPlace {
    RegistryKey (*root)(RegistryView view);
    std::wstring path;
    const wchar_t* subKey;
    const wchar_t* valueName;
};

void deleteComponents(RegistryView view) {
    const std::wstring path = std::wstring(L"SOFTWARE\\") + userDataKey + L"Components";
    RegistryKey components = RegistryKey::localMachine(view).openSubKey(path, true);
    components.enumerateSubKeys([](RegistryKey& key, const std::wstring& name) {
        // Any text or number identifies the record.
        if (!toText(key.getSubKeyValue(name, packedProductCode)).empty()) key.deleteTree(name);
        return true;
    });
}

}  // namespace

bool purgeInstallInfo(RegistryView view, const std::wstring& providerKey) {
    RegistryKey software = RegistryKey::localMachine(view).openSubKey(L"Software", true);
    if (!software) {
        PDX_LOG(logInfo, "purgeInstallInfo", "Failed to open Software registry key");
        return false;
    }
    const std::wstring userData = userDataKey;
    const RecordPlace places[] = {
        {RegistryKey::localMachine, uninstallKey, L"", L"DisplayName"},
        {RegistryKey::localMachine, L"SOFTWARE\\" + userData + L"Products", L"InstallProperties", L"DisplayName"},
        {RegistryKey::classesRoot, L"Installer\\Dependencies", L"", L"DisplayName"},
        {RegistryKey::classesRoot, L"Installer\\Products", L"", L"ProductName"},
    };
    for (const RecordPlace& place : places) {
        RegistryKey key = place.root(view).openSubKey(place.path, true);
        deleteInstallerSubkeys(key, providerKey, place.subKey, place.valueName);
    }
    RegistryKey classes = RegistryKey::classesRoot(view);
    const std::wstring product = packedProductCode;
    classes.deleteTree(L"Installer\\Features\\" + product);
    classes.deleteTree(L"Installer\\Products\\" + product);
    classes.deleteTree(std::wstring(L"Installer\\UpgradeCodes\\") + packedUpgradeCode);
    software.deleteTree(userData + L"Products\\" + product);
    deleteComponents(view);
    RegistryKey::localMachine(view).deleteTree(productKey);
    return true;
}

bool deleteInstallerSubkeys(RegistryKey& key, const std::wstring& providerKey, const std::wstring& subKey,
                            const std::wstring& valueName) {
    key.enumerateSubKeys([&](RegistryKey& records, const std::wstring& name) {
        if (equalsIgnoreCase(name, providerKey)) return true;
        const std::wstring path = subKey.empty() ? name : name + L'\\' + subKey;
        if (!isProductName(toText(records.getSubKeyValue(path, valueName)))) return true;
        PDX_LOG(logInfo, "deleteInstallerSubkeys", "Deleting registry tree %ls", name);
        records.deleteTree(name);
        return true;
    });
    return true;
}

}  // namespace pdx
