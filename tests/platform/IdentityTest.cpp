// The system and its texts for errors, and digests.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include "platform/Errors.h"
#include "platform/Hash.h"
#include "platform/OsIdentity.h"
#include "tests/platform/CapturedLog.h"

namespace pdx {
namespace {

TEST(OsIdentity, NamesWineAndTheSystemItReports) {
    const CapturedLog log;
    // Wine 8.0 gives two numbers and not three.
    EXPECT_EQ(getOsVersion(), "Wine Unknown");
    EXPECT_EQ(getProcessorArchitecture(), "AMD64");
    EXPECT_TRUE(isSystem64Bit());
    EXPECT_THAT(log.take(), testing::IsEmpty());
    const auto kernel = kernelVersion();
    ASSERT_TRUE(kernel);
    EXPECT_EQ(windowsName(*kernel), osInfoValue::windows10);
}

TEST(DescribeError, ReturnsTheSystemsTextOrTheNumber) {
    // A code of the library's own is not in the system's table.
    EXPECT_EQ(describeError(static_cast<HRESULT>(0xA7FF047E)), "a7ff047e");
    EXPECT_EQ(describeError(static_cast<HRESULT>(0x80070005)), "Access denied.");
    EXPECT_THAT(describeError(HRESULT_FROM_WIN32(ERROR_BAD_EXE_FORMAT)), testing::HasSubstr("%1"))
        << "inserts stay as they are";
}

TEST(HashString, HashesAllBytes) {
    const std::tuple<const wchar_t*, std::string_view, const char*> cases[] = {
        {L"SHA1", {"a\0b", 3}, "4a3dec2d1f8245280855c42db0ee4239f917fdb8"},
        {L"SHA1", {}, "da39a3ee5e6b4b0d3255bfef95601890afd80709"},
        {L"MD5", "abc", "900150983cd24fb0d6963f7d28e17f72"},
        {L"NONE", "abc", ""},
    };
    for (const auto& [algorithm, text, digest] : cases)
        EXPECT_EQ(hashString(algorithm, text.data(), text.size()), digest) << toUtf8(algorithm);
}

}  // namespace
}  // namespace pdx
