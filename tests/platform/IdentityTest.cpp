// What the system is, what it says of errors, and digests.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <cctype>

#include "platform/Errors.h"
#include "platform/Hash.h"
#include "platform/OsIdentity.h"
#include "tests/platform/CapturedLog.h"

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

TEST(DescribeError, GivesTheSystemsTextOrTheNumber) {
    const std::pair<uint32_t, const char*> cases[] = {
        // The library's own codes and those of the engine's facilities are not in the system's table.
        {0xA7FF047E, "a7ff047e"},
        {0xA7FF0020, "a7ff0020"},
        {0xA0010643, "a0010643"},
        {0x8FFFFFFF, "8fffffff"},
    };
    for (const auto& [code, text] : cases) EXPECT_EQ(describeError(static_cast<HRESULT>(code)), text);
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
    const std::tuple<const wchar_t*, std::string_view, const char*> cases[] = {
        {L"SHA1", "", "da39a3ee5e6b4b0d3255bfef95601890afd80709"},
        {L"SHA1", "abc", "a9993e364706816aba3e25717850c26c9cd0d89d"},
        {L"SHA1", {"a\0b", 3}, "4a3dec2d1f8245280855c42db0ee4239f917fdb8"},
        {L"SHA1", longText, "34aa973cd4c4daa4f61eeb2bdbad27316534016f"},
        {L"MD5", "abc", "900150983cd24fb0d6963f7d28e17f72"},
        {L"SHA256", "abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {L"NONE", "abc", ""},
        {L"", "abc", ""},
    };
    for (const auto& [algorithm, text, digest] : cases)
        EXPECT_EQ(hashString(algorithm, text.data(), text.size()), digest) << toUtf8(algorithm);
    EXPECT_EQ(hashString(L"SHA1", nullptr, 0), "da39a3ee5e6b4b0d3255bfef95601890afd80709");
}

}  // namespace
}  // namespace pdx
