#include "state/InstallInfo.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/product/ClientPackage.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Text.h"
#include "tests/platform/CapturedLog.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

using testing::ElementsAre;

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

class InstallInfoTest : public testing::Test {
  protected:
    TestKeys keys{{L"Software\\Corvane Works", uninstallKey, userData + L"Products", userData + L"Components",
                   L"Software\\Classes\\Installer"}};
};

TEST_F(InstallInfoTest, DeletesRecordsOfOneViewByTheirName) {
    const struct {
        RegistryKey (*root)(RegistryView);
        std::wstring place, subKey;
        const wchar_t* value;
        bool shared;  ///< between the views
    } places[] = {
        {RegistryKey::localMachine, uninstallKey, L"", L"DisplayName", false},
        {RegistryKey::localMachine, userData + L"Products", L"\\InstallProperties", L"DisplayName", false},
        {RegistryKey::classesRoot, L"Installer\\Dependencies", L"", L"DisplayName", true},
        {RegistryKey::classesRoot, L"Installer\\Products", L"", L"ProductName", true},
    };
    const std::pair<const wchar_t*, RegistryValue> records[] = {
        {L"a", L"Bastion Beta"},
        {L"b", L"Palisade Desktop 2"},
        {L"c", L"Palisade Desktop"},
        {L"d", L"palisade app"},
        {L"e", L"Palisade app"},
        {L"f", L""},
        {L"g", L"Palisade app"},
        {L"h", L"Palisade app"},
        {L"i", L"Palisade app "},
        {L"j", 7u},
        {L"{0b5a7c53-1e0d-4c7a-8f63-2d9c41e7b6a0}", L"Palisade app"},
    };
    for (const RegistryView purged : {view32, view64}) {
        keys.clear();
        for (const auto& place : places)
            for (const RegistryView view : {view32, view64})
                for (const auto& [name, value] : records)
                    place.root(view).setSubKeyValue(place.place + L'\\' + name + place.subKey, place.value, value);
        EXPECT_TRUE(purgeInstallInfo(purged, providerKey));
        for (const auto& place : places) {
            // The key after a deleted one is passed over: "h" would otherwise be deleted.
            EXPECT_THAT(subKeys(place.root(purged), place.place),
                        ElementsAre(L"b", L"d", L"f", L"h", L"i", L"j", records[10].first))
                << place.place;
            const RegistryView other = purged == view32 ? view64 : view32;
            EXPECT_EQ(subKeys(place.root(other), place.place).size(), place.shared ? 7u : 11u) << place.place;
        }
    }
}

TEST_F(InstallInfoTest, DeletesThePackagesRecordsUnderAnyName) {
    const std::wstring installer = L"Software\\Classes\\Installer\\";
    const std::wstring trees[] = {installer + L"Features\\" + product, installer + L"Products\\" + product,
                                  installer + L"UpgradeCodes\\" + packedUpgradeCode, userData + L"Products\\" + product,
                                  productKey};
    for (const RegistryView view : {view32, view64}) {
        RegistryKey machine = RegistryKey::localMachine(view);
        for (const std::wstring& path : trees) {
            machine.setSubKeyValue(path + L"\\deep\\er", L"Name", L"Another name");
            machine.setSubKeyValue(path + L"0", L"Name", L"a follower");
        }
        EXPECT_TRUE(purgeInstallInfo(view, providerKey));
        for (const std::wstring& path : trees) {
            EXPECT_FALSE(machine.openSubKey(path, false)) << path;
            EXPECT_TRUE(machine.openSubKey(path + L"0", false)) << path;
        }
    }
}

TEST_F(InstallInfoTest, DeletesComponentsThatNameThePackage) {
    const std::tuple<const wchar_t*, std::wstring, RegistryValue> components[] = {
        {L"a", product, L"C:\\a"},      {L"b", L"B" + product.substr(1), L"C:\\b"},
        {L"c", product, L"C:\\shared"}, {L"d", product, L"passed over"},
        {L"e", product, L"C:\\e"},      {L"f", L"", product},
        {L"g", product, L""},           {L"h", product, 0u},
    };
    for (const RegistryView view : {view32, view64}) {
        RegistryKey machine = RegistryKey::localMachine(view);
        for (const auto& [name, value, data] : components)
            machine.setSubKeyValue(userData + L"Components\\" + name, value, data);
        machine.setSubKeyValue(userData + L"Components\\c", L"B" + product.substr(1), L"C:\\shared");
        purgeInstallInfo(view, providerKey);
        EXPECT_THAT(subKeys(machine, userData + L"Components"), ElementsAre(L"b", L"d", L"f", L"g"));
        purgeInstallInfo(view, providerKey);
        EXPECT_THAT(subKeys(machine, userData + L"Components"), ElementsAre(L"b", L"f", L"g")) << "a later repair";
    }
}

TEST_F(InstallInfoTest, DeletesNoOtherKeyByAnUnusualName) {
    RegistryKey machine = RegistryKey::localMachine(view64);
    const std::wstring neighbour(254, L'x');
    machine.setSubKeyValue(uninstallKey + (L'\\' + neighbour), L"DisplayName", L"Palisade Desktop 2");
    // A backslash in a provider key names no subkey; the longest name that a key can have is read and deleted.
    for (const std::wstring& name :
         {std::wstring(L"\"a\" 'b' %1"), std::wstring(255, L'x'), std::wstring(L"{\u00e9}")}) {
        for (const std::wstring& provider : {name, L"Software\\" + name, std::wstring(L"\\"), std::wstring()}) {
            machine.setSubKeyValue(uninstallKey + (L'\\' + name), L"DisplayName", L"Palisade app");
            const CapturedLog log;
            RegistryKey key = machine.openSubKey(uninstallKey, true);
            EXPECT_TRUE(deleteInstallerSubkeys(key, provider, L"", L"DisplayName"));
            const std::vector<std::wstring> left = subKeys(machine, uninstallKey);
            EXPECT_THAT(left, testing::Contains(neighbour));
            EXPECT_EQ(left.size(), provider == name ? 2u : 1u);
            std::vector<std::string> deleted;
            if (provider != name) deleted.push_back("2 deleteInstallerSubkeys Deleting registry tree " + toUtf8(name));
            EXPECT_EQ(log.takeTexts(), deleted);
        }
    }
}

}  // namespace
}  // namespace pdx
