#include "platform/Registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform/CapturedLog.h"

namespace pdx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t testKey[] = L"Software\\Palisade Registry Test";

/// Gives each test an empty key in both views of HKEY_LOCAL_MACHINE, and takes it away again.
class RegistryTest : public testing::TestWithParam<RegistryView> {
  protected:
    RegistryTest() {
        deleteKeys();
        key = RegistryKey::localMachine(GetParam()).createSubKey(testKey, true);
        EXPECT_TRUE(key);
    }
    ~RegistryTest() override { deleteKeys(); }

    static void deleteKeys() {
        for (const REGSAM view : {KEY_WOW64_32KEY, KEY_WOW64_64KEY}) {
            HKEY software = nullptr;
            RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software", 0, KEY_ALL_ACCESS | view, &software);
            const UniqueHandle<RegistryKeyTraits> owner(software);
            RegDeleteTreeW(software, L"Palisade Registry Test");
        }
    }

    void store(const wchar_t* name, DWORD type, const void* bytes, size_t size) {
        ASSERT_EQ(RegSetValueExW(key.get(), name, 0, type, static_cast<const BYTE*>(bytes), static_cast<DWORD>(size)),
                  ERROR_SUCCESS);
    }

    std::vector<std::wstring> subKeys() {
        std::vector<std::wstring> names;
        key.enumerateSubKeys([&](RegistryKey&, const std::wstring& name) {
            names.push_back(name);
            return true;
        });
        return names;
    }

    RegistryKey key = RegistryKey::localMachine(GetParam());
    CapturedLog log;
};

INSTANTIATE_TEST_SUITE_P(Views, RegistryTest, testing::Values(view32, view64),
                         [](const auto& view) { return view.param == view64 ? "view64" : "view32"; });

TEST_P(RegistryTest, ReadsWhatItWrote) {
    const RegistryValue values[] = {0u, 1u, 0xFFFFFFFFu, L"", L"text", L"ü\U0001F600", std::wstring(2046, L'x')};
    for (const RegistryValue& value : values) {
        for (const wchar_t* name : {L"name", L""}) {
            EXPECT_TRUE(key.setValue(name, value));
            EXPECT_EQ(key.getValue(name, 7u), value);
        }
        EXPECT_TRUE(key.setSubKeyValue(L"a\\b", L"name", value));
        EXPECT_EQ(key.getSubKeyValue(L"a\\b", L"name"), value);
    }
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_P(RegistryTest, WritesNumbersAsDwordAndTextsWithTheirEnd) {
    key.setValue(L"number", 5u);
    key.setValue(L"text", L"ab");
    DWORD type = 0;
    DWORD size = 0;
    RegQueryValueExW(key.get(), L"number", nullptr, &type, nullptr, &size);
    EXPECT_THAT((std::array{type, size}), ElementsAre(DWORD{REG_DWORD}, 4u));
    RegQueryValueExW(key.get(), L"text", nullptr, &type, nullptr, &size);
    EXPECT_THAT((std::array{type, size}), ElementsAre(DWORD{REG_SZ}, 6u));
}

TEST_P(RegistryTest, KeepsTheViewsApart) {
    const RegistryView other = GetParam() == view64 ? view32 : view64;
    const RegistryKey root = RegistryKey::localMachine(other);
    ASSERT_TRUE(root.createSubKey(testKey, true).setValue(L"name", L"other"));
    key.setSubKeyValue(L"below", L"name", L"mine");
    EXPECT_EQ(key.getValue(L"name"), RegistryValue());
    EXPECT_EQ(root.getSubKeyValue(testKey, L"name"), RegistryValue(L"other"));
    EXPECT_FALSE(root.openSubKey(testKey, false).openSubKey(L"below", false)) << "the view travels with the key";
}

TEST_P(RegistryTest, EveryOtherViewNumberIsThe32BitOne) {
    key.setValue(L"name", L"mine");
    const RegistryValue read = RegistryKey::localMachine(static_cast<RegistryView>(2)).getSubKeyValue(testKey, L"name");
    EXPECT_EQ(read, GetParam() == view32 ? RegistryValue(L"mine") : RegistryValue());
}

TEST_P(RegistryTest, GivesTheDefaultForAMissingValueWithoutALine) {
    EXPECT_EQ(key.getValue(L"missing", L"default"), RegistryValue(L"default"));
    EXPECT_EQ(key.getValue(L"missing"), RegistryValue());
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_P(RegistryTest, GivesTheDefaultForAValueThatIsTooBig) {
    const std::pair<size_t, bool> cases[] = {{2046, true}, {2047, false}, {2048, false}, {100000, false}};
    for (const auto& [characters, read] : cases) {
        const std::wstring text(characters, L'x');
        ASSERT_TRUE(key.setValue(L"name", text));
        EXPECT_EQ(key.getValue(L"name", 7u), read ? RegistryValue(text) : RegistryValue(7u)) << characters;
    }
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_P(RegistryTest, ReadsATextUpToItsFirstZero) {
    store(L"zeros", REG_SZ, L"ab\0cd", 12);
    EXPECT_EQ(key.getValue(L"zeros"), RegistryValue(L"ab"));
    // A zero right behind the given size would be stored with the text.
    store(L"endless", REG_SZ, L"abc", 4);
    EXPECT_EQ(key.getValue(L"endless"), RegistryValue(L"ab"));
    const std::wstring full(2047, L'x');
    store(L"full", REG_SZ, (full + L"x").data(), 4094);
    EXPECT_EQ(key.getValue(L"full"), RegistryValue(full));
}

TEST_P(RegistryTest, NamesATypeThatItDoesNotRead) {
    const DWORD types[] = {REG_NONE, REG_EXPAND_SZ, REG_BINARY, REG_MULTI_SZ, REG_QWORD};
    for (const DWORD type : types) {
        store(L"name", type, L"a\0b\0", 8);
        EXPECT_EQ(key.getValue(L"name", L"default"), RegistryValue(L"default")) << type;
        EXPECT_THAT(log.take(), ElementsAre(LogEntry{logError, "RegistryKey::getValue",
                                                     fmt::format("Unsupported registry value type [{}]", type)}));
    }
}

TEST_P(RegistryTest, DoesNotWriteAnEmptyValue) {
    EXPECT_FALSE(key.setValue(L"name", RegistryValue()));
    EXPECT_THAT(log.take(), ElementsAre(LogEntry{logError, "RegistryKey::setValue", "Unsupported value type"}));
    EXPECT_EQ(key.getValue(L"name", 7u), RegistryValue(7u));
}

TEST_P(RegistryTest, AFailedOpenGivesAKeyThatFailsQuietly) {
    RegistryKey missing = key.openSubKey(L"mis\\sing", true);
    EXPECT_FALSE(missing);
    EXPECT_THAT(log.take(),
                ElementsAre(LogEntry{logError, "RegistryKey::openSubKey", "Failed to open subkey mis\\sing"}));
    EXPECT_EQ(missing.getValue(L"name", 7u), RegistryValue(7u));
    EXPECT_EQ(missing.getSubKeyValue(L"key", L"name", 7u), RegistryValue(7u));
    EXPECT_FALSE(missing.setValue(L"name", 1u));
    EXPECT_FALSE(missing.setValue(L"name", RegistryValue()));
    EXPECT_FALSE(missing.setSubKeyValue(L"key", L"name", 1u));
    EXPECT_FALSE(missing.openSubKey(L"key", false));
    EXPECT_FALSE(missing.createSubKey(L"key", false));
    missing.enumerateSubKeys([](RegistryKey&, const std::wstring&) -> bool {
        ADD_FAILURE() << "a key without a handle has no subkeys";
        return false;
    });
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_P(RegistryTest, ReportsASubKeyThatCannotBeMade) {
    // A key's name has at most 255 characters.
    const std::wstring tooLong(300, L'k');
    EXPECT_FALSE(key.createSubKey(tooLong, true));
    EXPECT_THAT(log.take(), ElementsAre(LogEntry{logError, "RegistryKey::createSubKey",
                                                 "Failed to create subkey " + std::string(300, 'k')}));
}

TEST_P(RegistryTest, AReadOnlyKeyIsNotWritable) {
    ASSERT_TRUE(key.createSubKey(L"sub", true));
    EXPECT_FALSE(key.openSubKey(L"sub", false).setValue(L"name", 1u));
    EXPECT_TRUE(key.openSubKey(L"sub", true).setValue(L"name", 1u));
}

TEST_P(RegistryTest, WalksTheSubKeysUntilItIsTold) {
    for (const wchar_t* name : {L"a", L"b", L"c"}) key.createSubKey(name, false);
    EXPECT_THAT(subKeys(), ElementsAre(L"a", L"b", L"c"));
    std::vector<std::wstring> seen;
    key.enumerateSubKeys([&](RegistryKey& parent, const std::wstring& name) {
        EXPECT_EQ(&parent, &key);
        seen.push_back(name);
        return name != L"b";
    });
    EXPECT_THAT(seen, ElementsAre(L"a", L"b"));
}

TEST_P(RegistryTest, DoesNotSeeTheFollowerOfASubKeyThatItsFunctionDeletes) {
    for (const wchar_t* name : {L"a", L"b", L"c", L"d", L"e"}) key.createSubKey(name, false);
    std::vector<std::wstring> seen;
    key.enumerateSubKeys([&](RegistryKey& parent, const std::wstring& name) {
        seen.push_back(name);
        RegDeleteTreeW(parent.get(), name.c_str());
        return true;
    });
    EXPECT_THAT(seen, ElementsAre(L"a", L"c", L"e"));
    EXPECT_THAT(subKeys(), ElementsAre(L"b", L"d"));
}

TEST_P(RegistryTest, EndsTheWalkOverAKeyThatIsGone) {
    RegistryKey doomed = key.createSubKey(L"doomed", true);
    doomed.createSubKey(L"a", false);
    doomed.createSubKey(L"b", false);
    int calls = 0;
    doomed.enumerateSubKeys([&](RegistryKey&, const std::wstring&) {
        ++calls;
        return RegDeleteTreeW(key.get(), L"doomed") == ERROR_SUCCESS;
    });
    EXPECT_EQ(calls, 1);
}

TEST(RegistryRoots, StandForThePredefinedKeys) {
    EXPECT_EQ(RegistryKey::classesRoot(view64).get(), HKEY_CLASSES_ROOT);
    EXPECT_EQ(RegistryKey::currentUser(view64).get(), HKEY_CURRENT_USER);
    EXPECT_EQ(RegistryKey::localMachine(view64).get(), HKEY_LOCAL_MACHINE);
    // A root that was closed with its owner can be used again.
    EXPECT_TRUE(RegistryKey::classesRoot(view64).openSubKey(L"CLSID", false));
    EXPECT_TRUE(RegistryKey::currentUser(view32).openSubKey(L"Software", false));
}

TEST(RegistryToText, GivesTextsNumbersAndNothing) {
    EXPECT_EQ(toText(RegistryValue(L"text")), L"text");
    EXPECT_EQ(toText(RegistryValue(0u)), L"0");
    EXPECT_EQ(toText(RegistryValue(4294967295u)), L"4294967295");
    EXPECT_EQ(toText(RegistryValue()), L"");
}

}  // namespace
}  // namespace pdx
