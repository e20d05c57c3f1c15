#include "state/ProductState.h"

#include <windows.h>

#include "platform/Processes.h"
#include "platform/product/BundleEntry.h"
#include "platform/product/Programs.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"
#include "platform/rules/Version.h"
#include "platform/Text.h"

namespace pdx {

void setUnavailable(bool available) {
    const uint32_t unavailable = available ? 0 : 1;
    for (const RegistryView view : {view32, view64})
        RegistryKey::localMachine(view).setSubKeyValue(productKey, L"IsUnavailable", unavailable);
    Sleep(200);
    constexpr std::wstring_view helpers[] = {connectProgram};
    terminateProcesses(helpers);
}

void restoreClientPath(const std::wstring& keyPath) {
    const RegistryKey machine = RegistryKey::localMachine(view32);
    RegistryKey product = machine.openSubKey(keyPath, true);
    if (!product) return;
    const std::wstring earlier = toText(product.getValue(L"PrevClientPath"));
    if (earlier.empty())
        product.deleteValue(L"ClientPath");
    else
        product.setValue(L"ClientPath", earlier);
    product.deleteValue(L"PrevClientPath");
    // Not deleteTree: this function spares subkeys, also new ones; values written since the check are lost.
    if (product.isEmpty()) RegDeleteKeyExW(machine.get(), keyPath.c_str(), machine.viewFlag(), 0);
}

void restoreProtocolHandler(const std::wstring& protocol, const std::wstring& command) {
    RegistryKey classes = RegistryKey::classesRoot(view64);
    if (!command.empty()) {
        RegistryKey open = classes.createSubKey(protocol + L"\\shell\\open\\command", true);
        if (open && open.setValue({}, command)) return;
    }
    classes.deleteTree(protocol);
}

void writeBundleVersion(const std::wstring& providerKey, const std::wstring& version) {
    RegistryKey entry = openBundleEntry(providerKey);
    const uint64_t numbers = parseVersion64(toUtf8(version));
    entry.setValue(L"BundleVersion", version);
    entry.setValue(L"DisplayVersion", version);
    entry.setValue(L"VersionMajor", static_cast<uint32_t>(numbers >> 48));
    entry.setValue(L"VersionMinor", static_cast<uint32_t>(numbers >> 32 & 0xFFFF));
}

}  // namespace pdx
