// What the system is, what it says of errors, digests and identifiers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <cctype>
#include <set>

#include "platform/Errors.h"
#include "platform/Hash.h"
#include "platform/OsIdentity.h"
#include "platform/Registry.h"
#include "platform/Uuid.h"
#include "tests/platform/CapturedLog.h"
#include "tests/platform/Probe.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

TEST(OsIdentity, NamesTheSystemByWhatItIs) {
    const CapturedLog log;
    // Wine 8.0 gives two numbers and not three.
    EXPECT_EQ(getOsVersion(), "Wine Unknown");
    EXPECT_EQ(getProcessorArchitecture(), "AMD64");
    EXPECT_TRUE(isSystem64Bit());
    EXPECT_THAT(log.take(), testing::IsEmpty());
}

TEST(OsIdentity, ReadsTheKernelsOwnVersion) {
    const auto kernel = kernelVersion();
    ASSERT_TRUE(kernel);
    EXPECT_EQ(windowsName(*kernel), osInfoValue::windows10);
}

TEST(OsIdentity, FollowsTheVersionThatTheSystemShowsAProgram) {
    const TestFolder folder;
    const std::wstring settings = L"Software\\Wine\\AppDefaults\\probe.exe";
    const struct {
        const wchar_t* setting;
        const char* system;
    } cases[] = {
        {L"vista", "6.0.6002"}, {L"win7", "6.1.7601"}, {L"win8", "6.2.9200"},
        {L"win81", "6.3.9600"}, {L"win10", "10.0."},
    };
    const RegistryKey user = RegistryKey::currentUser(view64);
    for (const auto& row : cases) {
        ASSERT_TRUE(user.createSubKey(settings, true).setValue(L"Version", row.setting));
        const std::wstring report = folder.path(row.setting);
        waitFor(startProbe(L"versions \"" + report + L"\""));
        EXPECT_THAT(readFile(report), testing::AllOf(testing::StartsWith(row.system), testing::HasSubstr("\n10.0.")))
            << "the system's version and that of kernel32.dll";
    }
    RegDeleteTreeW(user.get(), settings.c_str());
}

TEST(DescribeError, GivesTheSystemsTextOrTheNumber) {
    const struct {
        uint32_t code;
        const char* text;
    } cases[] = {
        // The library's own codes and those of the engine's facilities are not in the system's table.
        {0xA7FF047E, "a7ff047e"},
        {0xA7FF0020, "a7ff0020"},
        {0xA0010643, "a0010643"},
        {0x8FFFFFFF, "8fffffff"},
    };
    for (const auto& row : cases) EXPECT_EQ(describeError(static_cast<HRESULT>(row.code)), row.text);
    for (const uint32_t code : {0u, 0x80070005u, 0x80070642u, 0x80070643u, 0x80004005u, 5u}) {
        const std::string text = describeError(static_cast<HRESULT>(code));
        EXPECT_NE(text, fmt::format("{:08x}", code)) << "the system knows this one";
        ASSERT_FALSE(text.empty());
        EXPECT_FALSE(std::isspace(static_cast<unsigned char>(text.back()))) << text;
    }
    EXPECT_EQ(describeError(static_cast<HRESULT>(0x80070005)), describeError(5));
    EXPECT_THAT(describeError(HRESULT_FROM_WIN32(ERROR_BAD_EXE_FORMAT)), testing::HasSubstr("%1"))
        << "inserts stay as they are";
}

TEST(HashString, KnowsTheDigestsOfTheAlgorithms) {
    const std::string longText(1'000'000, 'a');
    const struct {
        const wchar_t* algorithm;
        std::string_view text;
        const char* digest;
    } cases[] = {
        {L"SHA1", "", "da39a3ee5e6b4b0d3255bfef95601890afd80709"},
        {L"SHA1", "abc", "a9993e364706816aba3e25717850c26c9cd0d89d"},
        {L"SHA1", {"a\0b", 3}, "4a3dec2d1f8245280855c42db0ee4239f917fdb8"},
        {L"SHA1", longText, "34aa973cd4c4daa4f61eeb2bdbad27316534016f"},
        {L"MD5", "abc", "900150983cd24fb0d6963f7d28e17f72"},
        {L"SHA256", "abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {L"NONE", "abc", ""},
        {L"", "abc", ""},
    };
    for (const auto& row : cases)
        EXPECT_EQ(hashString(row.algorithm, row.text.data(), row.text.size()), row.digest) << toUtf8(row.algorithm);
    EXPECT_EQ(hashString(L"SHA1", nullptr, 0), "da39a3ee5e6b4b0d3255bfef95601890afd80709");
}

TEST(NewUuidString, IsOfItsFormAndNeverTheSame) {
    std::set<std::string> seen;
    for (int i = 0; i < 1000; ++i) {
        const std::string text = newUuidString();
        // A random identifier says so: version 4, variant 8 to b.
        std::string form = text;
        for (char& letter : form)
            if (letter != '-') letter = std::string_view("0123456789abcdef").find(letter) < 16 ? 'x' : '?';
        ASSERT_EQ(form, "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx") << text;
        EXPECT_EQ(text[14], '4') << text;
        EXPECT_NE(std::string_view("89ab").find(text[19]), std::string_view::npos) << text;
        EXPECT_TRUE(seen.insert(text).second) << text;
    }
}

}  // namespace
}  // namespace pdx
