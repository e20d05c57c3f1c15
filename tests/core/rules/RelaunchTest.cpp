#include "core/rules/Relaunch.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

TEST(Handover, KeepsEachValueInOneArgument) {
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"", L""},
        {L"1", L"1"},
        {L"C:\\a\\", L"C:\\a\\"},
        {L"x /quiet", L"\"x /quiet\""},
        {L"x\t/quiet", L"\"x\t/quiet\""},
        {L"\"", L"\"\\\"\""},
        {L"a\\\\\"b", L"\"a\\\\\\\\\\\"b\""},
        {L"a\\b c\\", L"\"a\\b c\\\\\""},
    };
    for (const auto& [given, passed] : rows) {
        const std::wstring text = passed;
        EXPECT_EQ(relaunchParameters([&value = given](auto) { return value; }),
                  L"PDX_MERIDIAN_MODE=" + text + L" KESTREL_AUTHCODE=" + text + L" PDX_UNINSTALL_BASTION=" + text +
                      L" PDX_MERIDIAN_COHORT=" + text + L" PDX_MERIDIAN_ENABLE=" + text + L" PDX_REPAIR=" + text +
                      L" HARRIER_ENABLE=" + text);
        EXPECT_EQ(authArgument(given), *given ? L"--authCode=" + text : L"");
    }
}

}  // namespace
}  // namespace pdx
