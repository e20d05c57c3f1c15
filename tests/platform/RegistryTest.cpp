#include "platform/Registry.h"

#include <fmt/format.h>
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
        for (const RegistryView view : {view32, view64}) RegistryKey::localMachine(view).deleteTree(testKey);
    }

    void store(const wchar_t* name, DWORD type, const void* bytes, size_t size) {
        ASSERT_EQ(RegSetValueExW(key.get(), name, 0, type, static_cast<const BYTE*>(bytes), static_cast<DWORD>(size)),
                  ERROR_SUCCESS);
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
    EXPECT_EQ(toText(key.getValue(L"missing", 0u)) + toText(key.getValue(L"missing", L"text")), L"0text");
    EXPECT_EQ(toText(key.getValue(L"missing")), L"");
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

TEST_P(RegistryTest, DeletesInItsOwnViewAlsoBelowARoot) {
    RegistryKey root = RegistryKey::localMachine(GetParam());
    RegistryKey other = RegistryKey::localMachine(GetParam() == view64 ? view32 : view64);
    for (RegistryKey* const place : {&root, &other})
        place->setSubKeyValue(testKey + std::wstring(L"\\a\\b"), L"name", 1u);
    EXPECT_FALSE(key.isEmpty());
    EXPECT_FALSE(root.deleteTree(L"")) << "that would empty the root itself";
    EXPECT_TRUE(root.deleteTree(testKey + std::wstring(L"\\a")));
    EXPECT_TRUE(root.deleteTree(testKey + std::wstring(L"\\a"))) << "what is not there is gone";
    EXPECT_TRUE(key.isEmpty());
    EXPECT_EQ(other.getSubKeyValue(testKey, L"none", 7u), RegistryValue(7u));
    EXPECT_TRUE(other.openSubKey(testKey, false).openSubKey(L"a\\b", false)) << "the other view's stays";
    key.setValue(L"name", 1u);
    EXPECT_FALSE(key.isEmpty());
    EXPECT_TRUE(key.deleteValue(L"name"));
    EXPECT_TRUE(key.deleteValue(L"name")) << "what is not there is gone";
    EXPECT_TRUE(key.isEmpty());
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_P(RegistryTest, AFailedOpenGivesAKeyThatFailsQuietly) {
    RegistryKey missing = key.openSubKey(L"mis\\sing", true);
    EXPECT_FALSE(missing);
    EXPECT_THAT(log.take(),
                ElementsAre(LogEntry{logError, "RegistryKey::openSubKey", "Failed to open subkey mis\\sing"}));
    EXPECT_EQ(missing.getValue(L"name", 7u), RegistryValue(7u));
    EXPECT_EQ(missing.getSubKeyValue(L"key", L"name", 7u), RegistryValue(7u));
    EXPECT_FALSE(missing.setValue(L"name", 1u));
    EXPECT_FALSE(missing.deleteTree(L"key") || missing.isEmpty() || missing.createSubKey(L"key", false));
    missing.enumerateSubKeys([](RegistryKey&, const std::wstring&) -> bool {
        ADD_FAILURE() << "a key without a handle has no subkeys";
        return false;
    });
    EXPECT_THAT(log.take(), IsEmpty());
}

}  // namespace
}  // namespace pdx
