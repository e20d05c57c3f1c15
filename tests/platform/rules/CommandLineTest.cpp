#include "platform/rules/CommandLine.h"

#include <gtest/gtest.h>

#include <vector>

namespace pdx {
namespace {

TEST(CommandLine, SetsVariablesFromArguments) {
    // name: null: no variable
    const std::tuple<std::wstring_view, const wchar_t*, const wchar_t*> rows[] = {
        {L"A=B=C", L"A", L"B=C"},     {L"A=", L"A", L""},
        {L"=B", L"", L"B"},           {L"InstallFolder=C:\\Spiele \u00fc", L"InstallFolder", L"C:\\Spiele \u00fc"},
        {L"/X=1", nullptr, nullptr},  {L"-X=1", nullptr, nullptr},
        {L"quiet", nullptr, nullptr}, {L"", nullptr, nullptr},
    };
    for (const auto& [argument, name, value] : rows) {
        const auto variable = variableOfArgument(argument);
        ASSERT_EQ(variable.has_value(), name != nullptr) << testing::PrintToString(argument);
        if (!variable) continue;
        EXPECT_EQ(variable->first, name);
        EXPECT_EQ(variable->second, value);
    }
}

TEST(CommandLine, ReadsAnUpdatesDisplayFromItsCommandLine) {
    constexpr auto embedded = BOOTSTRAPPER_DISPLAY_EMBEDDED, none = BOOTSTRAPPER_DISPLAY_NONE,
                   passive = BOOTSTRAPPER_DISPLAY_PASSIVE;
    const std::pair<std::vector<std::wstring>, BOOTSTRAPPER_DISPLAY> rows[] = {
        {{}, embedded},
        {{L"/quiet"}, none},
        {{L"-burn.related.update", L"-QUIET"}, none},
        {{L"/q"}, none},
        {{L"-S"}, none},
        {{L"/Silent"}, none},
        {{L"/passive"}, passive},
        {{L"/quiet", L"/passive"}, passive},
        {{L"/quiet", L"/passive"}, passive},
        {{L"/passive", L"-q"}, none},
        {{L"quiet"}, embedded},
        {{L"/quieter"}, embedded},
        {{L"A=/quiet"}, embedded},
        {{L"/log", L"/quiet"}, embedded},
        {{L"/l", L"x", L"/quiet"}, none},
        {{L"/log"}, embedded},
    };
    for (const auto& [arguments, display] : rows) {
        EXPECT_EQ(displayTowardsUser(embedded, BOOTSTRAPPER_RELATION_UPDATE, arguments), display);
        EXPECT_EQ(displayTowardsUser(embedded, BOOTSTRAPPER_RELATION_UPGRADE, arguments), embedded);
    }
}

TEST(CommandLine, HidesTheLoginCode) {
    const std::pair<const wchar_t*, const wchar_t*> lines[] = {
        {L"s KESTREL_AUTHCODE=abc /quiet", L"s KESTREL_AUTHCODE=#### /quiet"},
        {L"s \"KESTREL_AUTHCODE=a b\" x=1", L"s \"KESTREL_AUTHCODE=####\" x=1"},
        {L"s KESTREL_AUTHCODE=\"a b\"c x=1", L"s KESTREL_AUTHCODE=#### x=1"},
        {L"\"C:\\a b\\s.exe\" KESTREL_AUTHCODE=a", L"\"C:\\a b\\s.exe\" KESTREL_AUTHCODE=####"},
        {L"s KESTREL_AUTHCODE= x=1", L"s KESTREL_AUTHCODE= x=1"},
        {L"s KESTREL_AUTHCODE=a KESTREL_AUTHCODE=b", L"s KESTREL_AUTHCODE=#### KESTREL_AUTHCODE=####"},
        // As the system splits them.
        {L"s \"KESTREL_AUTHCODE\"=a x", L"s \"KESTREL_AUTHCODE\"=#### x"},
        {L"s KESTREL\"_AUTHCODE=a b\" x", L"s KESTREL\"_AUTHCODE=####\" x"},
        {L"s KESTREL_AUTHCODE=\"a\\\" b\" x", L"s KESTREL_AUTHCODE=#### x"},
        {L"s KESTREL_AUTHCODE=\"a\\\\\" x", L"s KESTREL_AUTHCODE=#### x"},
        {L"s KESTREL_AUTHCODE=\"\"\"\"a b\" x", L"s KESTREL_AUTHCODE=#### x"},
        {L"s KESTREL_AUTHCODE=\"a\"\"b x", L"s KESTREL_AUTHCODE=#### x"},
        {L"s\\\"\tKESTREL_AUTHCODE=a\tx  y", L"s\\\"\tKESTREL_AUTHCODE=####\tx  y"},
        {L"\"s\\\" \"KESTREL_AUTHCODE=a b", L"\"s\\\" \"KESTREL_AUTHCODE=####"},
        {L"s \"KESTREL_AUTHCODE=\" x", L"s \"KESTREL_AUTHCODE=\" x"},
        {L"s /x=\"y KESTREL_AUTHCODE=a b\"", L"s /x=\"y KESTREL_AUTHCODE=####\""},
        {L"s \"KESTREL_AUTHCODE=\"a \"b c\"", L"s \"KESTREL_AUTHCODE=####\" \"b c\""},
    };
    for (const auto& [line, hidden] : lines) EXPECT_EQ(hideAuthcode(line), hidden);
}

}  // namespace
}  // namespace pdx
