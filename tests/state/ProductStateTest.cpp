#include "state/ProductState.h"

#include <gtest/gtest.h>

#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

/// A value by what it is written as; null is absent.
void lay(RegistryKey& root, const std::wstring& key, const wchar_t* name, const wchar_t* text) {
    if (text) root.setSubKeyValue(key, name, text);
}

TEST(RestoreClientPath, RestoresTheEarlierProgramAndDeletesAnEmptyKey) {
    constexpr const wchar_t* gone = nullptr;
    const struct {
        const wchar_t *current, *earlier, *restored;  ///< each null without the value
        bool keyStays;
    } rows[] = {
        {L"C:\\new", L"C:\\old", L"C:\\old", true}, {L"C:\\new", L"", gone, false}, {L"C:\\new", gone, gone, false},
        {L"", L"C:\\old", L"C:\\old", true},        {L"", L"", gone, false},        {L"", gone, gone, false},
        {gone, L"C:\\old", L"C:\\old", true},       {gone, L"", gone, false},
    };
    const TestKeys keys({bastionKey});
    RegistryKey machine = RegistryKey::localMachine(view32);
    for (const std::wstring& other : {std::wstring(), std::wstring(L"subkey"), std::wstring(L"value")}) {
        for (const auto& row : rows) {
            keys.clear();
            lay(machine, bastionKey, L"ClientPath", row.current);
            lay(machine, bastionKey, L"PrevClientPath", row.earlier);
            if (other == L"subkey") machine.createSubKey(std::wstring(bastionKey) + L"\\sub", true);
            if (other == L"value") machine.setSubKeyValue(bastionKey, L"BastionPath", L"C:\\b.exe");
            restoreClientPath(bastionKey);
            const RegistryKey left = machine.openSubKey(bastionKey, false);
            EXPECT_EQ(static_cast<bool>(left), row.keyStays || !other.empty()) << row.current << row.earlier << other;
            EXPECT_EQ(left.getValue(L"ClientPath"), row.restored ? RegistryValue(row.restored) : RegistryValue());
            EXPECT_EQ(left.getValue(L"PrevClientPath"), RegistryValue());
        }
    }
    keys.clear();
    RegistryKey::localMachine(view64).setSubKeyValue(bastionKey, L"ClientPath", L"of the other view");
    restoreClientPath(bastionKey);
    EXPECT_FALSE(machine.openSubKey(bastionKey, false)) << "no key is made";
    EXPECT_TRUE(RegistryKey::localMachine(view64).openSubKey(bastionKey, false));
}

TEST(RestoreProtocolHandler, RestoresTheEarlierCommandOrDeletesTheProtocol) {
    constexpr wchar_t protocol[] = L"pdxtest";
    constexpr wchar_t open[] = L"pdxtest\\shell\\open\\command";
    RegistryKey classes = RegistryKey::classesRoot(view64);
    for (const wchar_t* current : {static_cast<const wchar_t*>(nullptr), L"", L"\"C:\\new.exe\" \"%1\""}) {
        for (const std::wstring& earlier : {std::wstring(), std::wstring(L"\"C:\\old.exe\" \"%1\"")}) {
            lay(classes, open, L"", current);
            lay(classes, protocol, L"URL Protocol", current);
            restoreProtocolHandler(protocol, earlier);
            EXPECT_EQ(static_cast<bool>(classes.openSubKey(protocol, false)), !earlier.empty());
            EXPECT_EQ(classes.getSubKeyValue(open, L""), earlier.empty() ? RegistryValue() : RegistryValue(earlier));
            classes.deleteTree(protocol);
        }
    }
}

TEST(WriteBundleVersion, WritesOnlyToAnExistingEntry) {
    const std::wstring key = uninstallKey + std::wstring(L"\\pdxtest");
    const TestKeys keys({key});
    const RegistryKey machine = RegistryKey::localMachine(view32);
    const std::tuple<const wchar_t*, uint32_t, uint32_t> rows[] = {{L"12.37.0.5294", 12, 37}, {L"7", 7, 0}};
    for (const auto& [version, major, minor] : rows) {
        keys.clear();
        writeBundleVersion(L"pdxtest", version);
        EXPECT_FALSE(machine.openSubKey(key, false)) << "no entry is made";
        const RegistryKey entry = machine.createSubKey(key, true);
        writeBundleVersion(L"pdxtest", version);
        EXPECT_EQ(entry.getValue(L"BundleVersion"), RegistryValue(version));
        EXPECT_EQ(entry.getValue(L"DisplayVersion"), RegistryValue(version));
        EXPECT_EQ(entry.getValue(L"VersionMajor"), RegistryValue(major));
        EXPECT_EQ(entry.getValue(L"VersionMinor"), RegistryValue(minor));
    }
    const RegistryKey below = machine.createSubKey(key + L"\\sub", true);
    for (const wchar_t* none : {L"", L"\\", L"pdxtest\\sub"}) {
        writeBundleVersion(none, L"1.2");
        EXPECT_EQ(machine.getSubKeyValue(uninstallKey + (L'\\' + std::wstring(none)), L"VersionMajor"),
                  RegistryValue());
    }
}

}  // namespace
}  // namespace pdx
