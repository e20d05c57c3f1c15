#include "platform/Registry.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform/CapturedLog.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t testKey[] = L"Software\\Palisade Registry Test";

/// Gives each test an empty key, in each view.
class RegistryTest : public testing::TestWithParam<RegistryView> {
  protected:
    void store(const wchar_t* name, DWORD type, const void* bytes, size_t size) {
        ASSERT_EQ(RegSetValueExW(key.get(), name, 0, type, static_cast<const BYTE*>(bytes), static_cast<DWORD>(size)),
                  ERROR_SUCCESS);
    }

    TestKeys keys{{testKey}};
    RegistryKey root = RegistryKey::localMachine(GetParam());
    RegistryKey key = root.createSubKey(testKey, true);
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
    EXPECT_EQ(toText(key.getValue(L"missing", 70u)) + toText(key.getValue(L"missing")), L"70");
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_P(RegistryTest, ReturnsTheDefaultForATooLargeValue) {
    for (const size_t characters : {2047u, 100000u}) {
        ASSERT_TRUE(key.setValue(L"name", std::wstring(characters, L'x')));
        EXPECT_EQ(key.getValue(L"name", 7u), RegistryValue(7u)) << characters;
    }
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_P(RegistryTest, ReadsATextUpToItsFirstZero) {
    store(L"zeros", REG_SZ, L"ab\0cd", 12);
    EXPECT_EQ(key.getValue(L"zeros"), RegistryValue(L"ab"));
    // A zero right after the given size would be stored with the text.
    store(L"endless", REG_SZ, L"abc", 4);
    EXPECT_EQ(key.getValue(L"endless"), RegistryValue(L"ab"));
    const std::wstring full(2047, L'x');
    store(L"full", REG_SZ, (full + L"x").data(), 4094);
    EXPECT_EQ(key.getValue(L"full"), RegistryValue(full));
}

TEST_P(RegistryTest, LogsAnUnsupportedType) {
    for (const DWORD type :
         std::initializer_list<DWORD>{REG_NONE, REG_EXPAND_SZ, REG_BINARY, REG_MULTI_SZ, REG_QWORD}) {
        store(L"name", type, L"a\0b\0", 8);
        EXPECT_EQ(key.getValue(L"name", L"default"), RegistryValue(L"default")) << type;
        EXPECT_THAT(log.takeTexts(),
                    ElementsAre(fmt::format("0 RegistryKey::getValue Unsupported registry value type [{}]", type)));
    }
    EXPECT_FALSE(key.setValue(L"other", RegistryValue()));
    EXPECT_THAT(log.takeTexts(), ElementsAre("0 RegistryKey::setValue Unsupported value type"));
    EXPECT_EQ(key.getValue(L"other", 7u), RegistryValue(7u));
}

TEST_P(RegistryTest, DeletesInItsOwnViewAlsoBelowARoot) {
    RegistryKey other = RegistryKey::localMachine(GetParam() == view64 ? view32 : view64);
    for (RegistryKey* const place : {&root, &other})
        place->setSubKeyValue(testKey + std::wstring(L"\\a\\b"), L"name", 1u);
    EXPECT_FALSE(key.isEmpty());
    EXPECT_FALSE(root.deleteTree(L"")) << "that would empty the root itself";
    EXPECT_TRUE(root.deleteTree(testKey + std::wstring(L"\\a")));
    EXPECT_TRUE(root.deleteTree(testKey + std::wstring(L"\\a"))) << "a missing one counts as deleted";
    EXPECT_TRUE(key.isEmpty());
    EXPECT_TRUE(other.openSubKey(testKey, false).openSubKey(L"a\\b", false)) << "the other view's stays";
    key.setValue(L"name", 1u);
    EXPECT_FALSE(key.isEmpty());
    EXPECT_TRUE(key.deleteValue(L"name"));
    EXPECT_TRUE(key.deleteValue(L"name")) << "a missing one counts as deleted";
    EXPECT_TRUE(key.isEmpty());
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_P(RegistryTest, AFailedOpenReturnsAKeyThatFailsWithoutALogLine) {
    RegistryKey missing = key.openSubKey(L"mis\\sing", true);
    EXPECT_FALSE(missing);
    EXPECT_THAT(log.takeTexts(), ElementsAre("0 RegistryKey::openSubKey Failed to open subkey mis\\sing"));
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
