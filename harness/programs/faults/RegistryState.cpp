#include "harness/programs/faults/RegistryState.h"

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string_view>

#include "harness/programs/RegistryTree.h"
#include "platform/product/ClientPackage.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"
#include "platform/Text.h"

namespace pdx {

namespace {

namespace fs = std::filesystem;

using Root = RegistryKey (*)(RegistryView view);
constexpr Root machine = RegistryKey::localMachine, user = RegistryKey::currentUser;

struct Place {
    Root root;
    std::wstring key;
};

// Links and installer records by their place below HKEY_LOCAL_MACHINE: see ProcessCensus for HKEY_CLASSES_ROOT.
const std::wstring classes = L"Software\\Classes\\";
const std::wstring userData = windowsKey + std::wstring(L"\\Installer\\UserData");
const std::wstring records = userData + L"\\S-1-5-18\\";
const std::wstring runKey = windowsKey + std::wstring(L"\\Run");
const std::wstring makersKey = L"Software\\Corvane Works";
const Place places[] = {
    {machine, makersKey},
    {machine, bastionKey},
    {machine, uninstallKey},
    {machine, userData},
    {machine, classes + L"Installer"},
    {machine, classes + L"bastion"},
    {machine, classes + L"bastion2"},
    {machine, classes + L"gatelink"},
    {machine, classes + L"palisadeconnect.microsoft"},
    {user, makersKey},
    {user, runKey},
};

const std::wstring folder = L"C:\\Program Files\\Palisade\\";
const std::wstring launcher = folder + L"Palisade Desktop\\PalisadeLauncher.exe";
const std::wstring entryKey = uninstallKey + (L'\\' + std::wstring(bundleKey));
const std::wstring command = L"\\shell\\open\\command";
const std::wstring ownUninstall = L"\"C:\\cache\\PalisadeSetup.exe\" /uninstall";

/// As the client's package leaves it on a machine that had the older client.
const struct {
    Root root;
    RegistryView view;
    std::wstring key;
    std::wstring name;
    std::wstring text;
} installedValues[] = {
    {machine, view64, productKey, L"InstallLocation", folder},
    {machine, view64, productKey, L"LauncherAppPath", launcher},
    {machine, view64, productKey, L"PrevBastion2", L"\"C:\\Bastion\\Bastion.exe\" \"%1\""},
    {machine, view64, productKey, L"PrevGateLink", L"gate \"%1\""},
    {machine, view64, productKey, L"OriginalUninstallString", ownUninstall},
    {machine, view64, productKey, L"OriginalQuietUninstallString", ownUninstall + L" /quiet"},
    {machine, view32, entryKey, L"DisplayName", L"Palisade app"},
    {machine, view32, entryKey, L"UninstallString", launcher + L" -uninstall"},
    {machine, view32, entryKey, L"QuietUninstallString", launcher + L" -uninstall -silent"},
    {machine, view64, uninstallKey + std::wstring(L"\\{client}"), L"DisplayName", L"Palisade app"},
    {machine, view32, bastionKey, L"ClientPath", launcher},
    {machine, view32, bastionKey, L"PrevClientPath", L"C:\\Bastion\\Bastion.exe"},
    {machine, view32, fenwickKey, L"ClientPath", launcher},
    {machine, view64, classes + L"bastion" + command, L"", launcher},
    {machine, view64, classes + L"bastion2" + command, L"", launcher},
    {machine, view64, classes + L"gatelink" + command, L"", launcher},
    {machine, view64, classes + L"palisadeconnect.microsoft" + command, L"", launcher},
    {machine, view64, records + L"Products\\" + packedProductCode + L"\\InstallProperties", L"DisplayName",
     L"Palisade app"},
    {machine, view64, records + L"Components\\1", packedProductCode, launcher},
    {machine, view64, classes + L"Installer\\Products\\" + packedProductCode, L"ProductName", L"Palisade app"},
    {machine, view64, classes + L"Installer\\Features\\" + packedProductCode, L"Client", L""},
    {machine, view64, classes + L"Installer\\UpgradeCodes\\" + packedUpgradeCode, packedProductCode, L""},
    {user, view64, runKey, L"Fenwick", L'"' + launcher + L"\" -silent"},
};

std::string pointer(Root root, RegistryView view, const std::wstring& key, const std::wstring& path,
                    const std::wstring& name) {
    const std::wstring place = std::wstring(root == user ? L"user" : L"machine") + (view == view64 ? L"64 " : L"32 ");
    return "/" + toUtf8(place + key) + "/" + toUtf8(path) + "/" + toUtf8(name);
}

/// Where a run ends that fails in one of its later steps.
RegistryState stopped(RegistryState state, FirstSteps steps) {
    if (steps == FirstSteps::none) return state;
    for (const RegistryView view : {view32, view64})
        state[pointer(machine, view, makersKey, L"Palisade Desktop", L"IsUnavailable")] = "0x00000001";
    if (steps == FirstSteps::ofUninstall) return state;
    state[pointer(machine, view32, uninstallKey, bundleKey, L"UninstallString")] = toUtf8(ownUninstall);
    state[pointer(machine, view32, uninstallKey, bundleKey, L"QuietUninstallString")] =
        toUtf8(ownUninstall + L" /quiet");
    return state;
}

std::set<std::string> keysOf(const RegistryState& one, const RegistryState& other) {
    std::set<std::string> keys;
    for (const RegistryState* state : {&one, &other})
        for (const auto& entry : state->items()) keys.insert(entry.key());
    return keys;
}

const RegistryState* at(const RegistryState& state, const std::string& key) {
    const auto found = state.find(key);
    return found == state.end() ? nullptr : &*found;
}

bool same(const RegistryState* one, const RegistryState* other) { return one && other ? *one == *other : one == other; }

}  // namespace

RegistryState arrangeMachine(bool installed) {
    for (const Place& place : places)
        for (const RegistryView view : {view32, view64}) place.root(view).deleteTree(place.key);
    user(view64).createSubKey(runKey, true);
    fs::remove_all(folder);
    if (installed) {
        for (const auto& [root, view, key, name, text] : installedValues) root(view).setSubKeyValue(key, name, text);
        fs::create_directories(fs::path(launcher).parent_path());
        std::ofstream(fs::path(launcher)) << "the launcher\n";
    }
    return readMachine();
}

RegistryState readMachine() {
    RegistryState state = RegistryState::object();
    for (const Place& place : places)
        for (const RegistryView view : {view32, view64})
            state[(place.root == user ? "user" : "machine") + std::string(view == view64 ? "64 " : "32 ") +
                  toUtf8(place.key)] = treeOf(place.root(view).openSubKey(place.key, false));
    state = state.flatten();
    state["/folder"] = fs::exists(folder);
    return state;
}

std::string halfWritten(const AllowedStates& allowed, const RegistryState& after) {
    const RegistryState stop = stopped(allowed.before, allowed.firstSteps);
    RegistryState afterStop = after;
    afterStop["/folder"] = true;  // some of its files may be gone
    if (after == allowed.before || after == allowed.good || afterStop == stop) return {};
    for (const std::string& key : keysOf(allowed.before, after)) {
        const auto* found = at(after, key);
        if (same(found, at(allowed.good, key))) continue;
        if (allowed.registryFails &&
            (!found || found->is_null() || same(found, at(allowed.before, key)) || same(found, at(stop, key))))
            continue;
        return key + " is " + (found ? found->dump() : "gone");
    }
    return allowed.registryFails ? std::string() : "what a good run has made is missing";
}

}  // namespace pdx
