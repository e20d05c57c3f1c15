#include "config/rules/SupportAddress.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

TEST(SupportAddress, StandsInFrontOfTheLinksPath) {
    struct {
        const wchar_t* text;
        const wchar_t* address;
        const wchar_t* result;
    } const cases[] = {
        {L"<a href=\"{support}/en\">x</a>", L"https://s.example", L"<a href=\"https://s.example/en\">x</a>"},
        {L"{support}/en", L"https://s.example/", L"https://s.example/en"},
        {L"{support}{support}", L"a", L"aa"},
        {L"{support}/en", L"{support}", L"{support}/en"},
        {L"{support}/en", L"", L"/en"},
        {L"{supported} {suppor", L"a", L"{supported} {suppor"},
        {L"", L"a", L""},
    };
    for (const auto& row : cases) EXPECT_EQ(fillSupportAddress(row.text, row.address), row.result);
}

}  // namespace
}  // namespace pdx
