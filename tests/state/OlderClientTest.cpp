#include "state/OlderClient.h"

#include <gtest/gtest.h>

#include <optional>

#include "platform/Registry.h"

namespace pdx {
namespace {

void deleteKeys() {
    for (const RegistryView view : {view32, view64}) RegistryKey::localMachine(view).deleteTree(L"Software\\Bastion");
}

TEST(IsBastionInstalled, AsksForItsMarkerInThe32BitView) {
    struct Row {
        const char* name;
        RegistryView view;
        const wchar_t* valueName;
        RegistryValue value;
        bool installed;
    };
    const Row rows[] = {
        {"text", view32, L"InstallSuccesfull", L"true", true},
        {"any text", view32, L"InstallSuccesfull", L"false", true},
        {"empty text", view32, L"InstallSuccesfull", L"", false},
        {"number", view32, L"InstallSuccesfull", 1u, true},
        {"zero reads as \"0\"", view32, L"InstallSuccesfull", 0u, true},
        {"the other view", view64, L"InstallSuccesfull", L"true", false},
        {"spelt rightly", view32, L"InstallSuccessful", L"true", false},
        {"its path alone", view32, L"BastionPath", L"C:\\Bastion\\Bastion.exe", false},
    };
    deleteKeys();
    EXPECT_FALSE(isBastionInstalled()) << "no key";
    for (const Row& row : rows) {
        ASSERT_TRUE(RegistryKey::localMachine(row.view).setSubKeyValue(L"Software\\Bastion", row.valueName, row.value));
        EXPECT_EQ(isBastionInstalled(), row.installed) << row.name;
        deleteKeys();
    }
}

}  // namespace
}  // namespace pdx
