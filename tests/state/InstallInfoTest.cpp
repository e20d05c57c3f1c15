#include "state/InstallInfo.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/product/ClientPackage.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Text.h"
#include "tests/platform/CapturedLog.h"

namespace pdx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Root = RegistryKey (*)(RegistryView);

const std::wstring userData = L"Software\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\S-1-5-18\\";
const std::wstring product = packedProductCode;
constexpr wchar_t providerKey[] = L"{0B5A7C53-1E0D-4C7A-8F63-2D9C41E7B6A0}";

/// The names of a key's subkeys, in order.
std::vector<std::wstring> subKeys(const RegistryKey& parent, const std::wstring& path) {
    std::vector<std::wstring> names;
    parent.openSubKey(path, false).enumerateSubKeys([&](RegistryKey&, const std::wstring& name) {
        names.push_back(name);
        return true;
    });
    return names;
}

/// Whatever the tests lay out goes with them.
class InstallInfoTest : public testing::Test {
  protected:
    InstallInfoTest() { clear(); }
    ~InstallInfoTest() override { clear(); }

    static void clear() {
        for (const RegistryView view : {view32, view64}) {
            for (const std::wstring& path : {std::wstring(L"Software\\Corvane Works"), std::wstring(uninstallKey),
                                             userData + L"Products", userData + L"Components"})
                RegistryKey::localMachine(view).deleteTree(path);
            RegistryKey::classesRoot(view).deleteTree(L"Installer");
        }
    }
};

TEST_F(InstallInfoTest, PurgesTheRecordsOfOneViewThatBearAName) {
    const struct {
        Root root;
        std::wstring place;
        std::wstring subKey;
        const wchar_t* value;
        bool shared;  ///< between the views
    } places[] = {
        {RegistryKey::localMachine, uninstallKey, L"", L"DisplayName", false},
        {RegistryKey::localMachine, userData + L"Products", L"\\InstallProperties", L"DisplayName", false},
        {RegistryKey::classesRoot, L"Installer\\Dependencies", L"", L"DisplayName", true},
        {RegistryKey::classesRoot, L"Installer\\Products", L"", L"ProductName", true},
    };
    const std::pair<const wchar_t*, RegistryValue> records[] = {
        {L"a", L"Bastion Beta"},  {L"b", L"Palisade Desktop 2"}, {L"c", L"Palisade Desktop"},
        {L"d", L"palisade app"},  {L"e", L"Palisade app"},       {L"f", L""},
        {L"g", L"Palisade app"},  {L"h", L"Palisade app"},       {L"i", L"Palisade app "},
        {L"j", 7u},               {L"{0b5a7c53-1e0d-4c7a-8f63-2d9c41e7b6a0}", L"Palisade app"},
    };
    for (const RegistryView purged : {view32, view64}) {
        clear();
        for (const auto& place : places)
            for (const RegistryView view : {view32, view64})
                for (const auto& [name, value] : records)
                    place.root(view).setSubKeyValue(place.place + L'\\' + name + place.subKey, place.value, value);
        EXPECT_TRUE(purgeInstallInfo(purged, providerKey));
        for (const auto& place : places) {
            // The one behind a deleted one is not looked at; in its own place "h" would have gone.
            EXPECT_THAT(subKeys(place.root(purged), place.place),
                        ElementsAre(L"b", L"d", L"f", L"h", L"i", L"j", records[10].first))
                << place.place;
            const RegistryView other = purged == view32 ? view64 : view32;
            EXPECT_EQ(subKeys(place.root(other), place.place).size(), place.shared ? 7u : 11u) << place.place;
        }
    }
}

TEST_F(InstallInfoTest, PurgesThePackagesOwnRecordsWhateverTheirName) {
    const std::pair<Root, std::wstring> trees[] = {
        {RegistryKey::classesRoot, L"Installer\\Features\\" + product},
        {RegistryKey::classesRoot, L"Installer\\Products\\" + product},
        {RegistryKey::classesRoot, std::wstring(L"Installer\\UpgradeCodes\\") + packedUpgradeCode},
        {RegistryKey::localMachine, userData + L"Products\\" + product},
        {RegistryKey::localMachine, productKey},
    };
    for (const RegistryView view : {view32, view64}) {
        for (const auto& [root, path] : trees) {
            root(view).setSubKeyValue(path + L"\\deep\\er", L"Name", L"Another name");
            root(view).setSubKeyValue(path + L"0", L"Name", L"a follower");
        }
        EXPECT_TRUE(purgeInstallInfo(view, providerKey));
        for (const auto& [root, path] : trees) {
            EXPECT_FALSE(root(view).openSubKey(path, false)) << path;
            EXPECT_TRUE(root(view).openSubKey(path + L"0", false)) << path;
        }
    }
}

TEST_F(InstallInfoTest, TakesEachComponentThatThePackageIsNamedIn) {
    const struct {
        const wchar_t* name;
        std::wstring value;
        RegistryValue data;
    } components[] = {
        {L"a", product, L"C:\\a"},       {L"b", L"B" + product.substr(1), L"C:\\b"}, {L"c", product, L"C:\\shared"},
        {L"d", product, L"passed over"}, {L"e", product, L"C:\\e"},                  {L"f", L"", product},
        {L"g", product, L""},            {L"h", product, 0u},
    };
    for (const RegistryView view : {view32, view64}) {
        RegistryKey machine = RegistryKey::localMachine(view);
        for (const auto& component : components)
            machine.setSubKeyValue(userData + L"Components\\" + component.name, component.value, component.data);
        machine.setSubKeyValue(userData + L"Components\\c", L"B" + product.substr(1), L"C:\\shared");
        purgeInstallInfo(view, providerKey);
        EXPECT_THAT(subKeys(machine, userData + L"Components"), ElementsAre(L"b", L"d", L"f", L"g"));
    }
}

TEST_F(InstallInfoTest, DeletesNothingElseByNamesThatAreHardToWrite) {
    // A backslash in a provider key names no subkey; the longest name that a key can have is read and deleted.
    const std::wstring longest(255, L'x');
    for (const std::wstring& name : {std::wstring(L"\"a\" 'b' %1"), longest, std::wstring(L"{\u00e9\u65e5}")}) {
        for (const std::wstring& provider : {name, L"Software\\" + name, std::wstring(L"\\"), std::wstring()}) {
            RegistryKey::localMachine(view64).setSubKeyValue(uninstallKey + (L'\\' + name), L"DisplayName",
                                                             L"Palisade app");
            const CapturedLog log;
            RegistryKey key = RegistryKey::localMachine(view64).openSubKey(uninstallKey, true);
            EXPECT_TRUE(deleteInstallerSubkeys(key, provider, L"", L"DisplayName"));
            EXPECT_EQ(subKeys(RegistryKey::localMachine(view64), uninstallKey).size(), provider == name ? 1u : 0u);
            if (provider == name)
                EXPECT_THAT(log.take(), IsEmpty());
            else
                EXPECT_THAT(log.take(), ElementsAre(LogEntry{logInfo, "deleteInstallerSubkeys",
                                                             "Deleting registry tree " + toUtf8(name)}));
            RegistryKey::localMachine(view64).deleteTree(uninstallKey);
        }
    }
}

}  // namespace
}  // namespace pdx
