// The package's messages, its log, and the names of the engine's values.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>

#include "core/engine/rules/EnumNames.h"
#include "core/rules/MsiChannel.h"
#include "core/rules/PackageLog.h"
#include "platform/rules/Numbers.h"

namespace pdx {
namespace {

TEST(MsiChannel, ParsesCommands) {
    using Kind = MsiCommandKind;
    const std::wstring longValue(100000, L'v');
    const std::wstring longText = L"PDX_SET_VARIABLE:N=" + longValue;
    const std::tuple<std::wstring_view, Kind, std::wstring_view, std::wstring_view> rows[] = {
        {L"PDX_SET_VARIABLE:A=B=C", Kind::setVariable, L"A", L"B=C"},
        {L"PDX_SET_VARIABLE:=X", Kind::setVariable, L"", L"X"},
        {L"PDX_SET_VARIABLE:A=", Kind::setVariable, L"A", L""},
        {L"PDX_SET_VARIABLE: A = b ", Kind::setVariable, L" A ", L" b "},
        {L"PDX_UPDATE_CONTEXT:k\u00e9y=v", Kind::updateContext, L"k\u00e9y", L"v"},
        {L"PDX_SET_VARIABLE:NAME", Kind::malformed, L"", L""},
        {L"PDX_UPDATE_CONTEXT:", Kind::malformed, L"", L""},
        {L"pdx_set_variable:A=B", Kind::none, L"", L""},
        {L" PDX_SET_VARIABLE:A=B", Kind::none, L"", L""},
        {L"PDX_SET_VARIABLE", Kind::none, L"", L""},
        {L"Action start: A=B", Kind::none, L"", L""},
        {L"", Kind::none, L"", L""},
        {longText, Kind::setVariable, L"N", longValue},
    };
    for (const auto& [text, kind, name, value] : rows) {
        const MsiCommand command = parseMsiCommand(text);
        EXPECT_EQ(command.kind, kind) << text.size();
        EXPECT_EQ(command.name, name);
        EXPECT_EQ(command.value, value);
    }
}

TEST(MsiChannel, NamesAKindByItsHighByte) {
    const char* const first[] = {"msifatal", "msierr",  "msiwarn", "msiuser",    "msiinfo", "msifiu",
                                 "msires",   "msidisk", "msiact",  "msiactdata", "msiprog", "msicommon",
                                 "msiinit",  "msiterm", "msidlg",  "msiperf"};
    const std::map<uint32_t, std::string> others = {{0x19, "msirmfiu"}, {0x1A, "msistart"}, {0x1B, "msiend"}};
    for (uint32_t kind = 0; kind <= 0xFF; ++kind) {
        const auto other = others.find(kind);
        const std::string expected = kind < 16 ? first[kind] : other != others.end() ? other->second : "";
        for (const uint32_t style : {0u, 0x10u, 0xFFFFFFu}) {
            const char* const word = msiMessageWord(kind << 24 | style);
            EXPECT_EQ(word ? word : "", expected) << kind;
        }
    }
}

TEST(PackageLog, BuildsVariablesAndStems) {
    EXPECT_EQ(packageLogVariable(L"PalisadeApp.msi", true), L"WixBundleLog_PalisadeApp.msi");
    EXPECT_EQ(packageLogVariable(L"PalisadeApp.msi", false), L"WixBundleRollbackLog_PalisadeApp.msi");
    const std::pair<const wchar_t*, std::optional<std::wstring>> rows[] = {
        {L"C:\\t\\Setup_1.log", L"C:\\t\\Setup_1"},
        {L"C:\\a.log.d\\b.log", L"C:\\a.log.d\\b"},
        {L"C:\\t\\noending", L"C:\\t\\noending"},
        {L"x.log", L"x"},
        {L".log", std::nullopt},
        {L"", std::nullopt},
    };
    for (const auto& [path, stem] : rows) EXPECT_EQ(reportFileStem(path), stem);
}

TEST(ParseDecimal, ReadsWholeNumbersOf32Bits) {
    const std::pair<const wchar_t*, uint32_t> rows[] = {{L"1603", 1603},    {L"25000", 25000},
                                                        {L"", 0},           {L"none", 0},
                                                        {L"0", 0},          {L"0x643", 0},
                                                        {L" 12\r\n", 12},   {L"-2147023293", 0x80070643},
                                                        {L"1 2", 0},        {L"-", 0},
                                                        {L"12x", 0},        {L"4294967295", 4294967295u},
                                                        {L"4294967296", 0}, {L"99999999999999999999999", 0}};
    for (const auto& [text, number] : rows) EXPECT_EQ(parseDecimal(text), number);
}

/// The last name of an enumeration that counts from 0; every value around its names is out of range.
template <typename Enumeration>
void expectNames(const char* last, int32_t index) {
    EXPECT_STREQ(nameOf(static_cast<Enumeration>(index)), last);
    for (const int32_t outside : {-1, index + 1, INT32_MAX, INT32_MIN})
        EXPECT_STREQ(nameOf(static_cast<Enumeration>(outside)), "<INVALID>") << last << outside;
}

TEST(Names, EachEnumerationHasNames) {
    expectNames<BOOTSTRAPPER_ACTION_STATE>("BOOTSTRAPPER_ACTION_STATE_PATCH", 8);
    expectNames<BOOTSTRAPPER_PACKAGE_STATE>("BOOTSTRAPPER_PACKAGE_STATE_SUPERSEDED", 5);
    expectNames<BOOTSTRAPPER_RELATED_OPERATION>("BOOTSTRAPPER_RELATED_OPERATION_REPAIR", 6);
    expectNames<BOOTSTRAPPER_RELATION_TYPE>("BOOTSTRAPPER_RELATION_UPDATE", 6);
    expectNames<BOOTSTRAPPER_REQUEST_STATE>("BOOTSTRAPPER_REQUEST_STATE_REPAIR", 5);
    expectNames<BOOTSTRAPPER_FEATURE_STATE>("BOOTSTRAPPER_FEATURE_STATE_SOURCE", 4);
    expectNames<BOOTSTRAPPER_ERROR_TYPE>("BOOTSTRAPPER_ERROR_TYPE_APPLY", 5);
    expectNames<BOOTSTRAPPER_APPLY_RESTART>("BOOTSTRAPPER_APPLY_RESTART_INITIATED", 2);
    expectNames<BOOTSTRAPPER_CACHE_OPERATION>("BOOTSTRAPPER_CACHE_OPERATION_EXTRACT", 2);
    EXPECT_STREQ(nameOfPointed<BOOTSTRAPPER_REQUEST_STATE>(nullptr), "<INVALID>");
}

TEST(Names, MessageBoxStylesHaveNames) {
    const std::pair<uint32_t, const char*> rows[] = {
        {0x00, "MB_OK | <BADICON> | MB_DEFBUTTON1"},
        {0x11, "MB_OKCANCEL | MB_ICONHAND | MB_DEFBUTTON1"},
        {0x122, "MB_ABORTRETRYIGNORE | MB_ICONQUESTION | MB_DEFBUTTON2"},
        {0x233, "MB_YESNOCANCEL | MB_ICONEXCLAMATION | MB_DEFBUTTON3"},
        {0x344, "MB_YESNO | MB_ICONASTERISK | MB_DEFBUTTON4"},
        {0x485, "MB_RETRYCANCEL | MB_USERICON | <BADDEFBTN>"},
        {0x56, "MB_CANCELTRYCONTINUE | <BADICON> | MB_DEFBUTTON1"},
        {0x17, "<INVALID> | MB_ICONHAND | MB_DEFBUTTON1"},
        {0xFFFFFFFF, "<INVALID> | <BADICON> | <BADDEFBTN>"},
    };
    for (const auto& [style, name] : rows) EXPECT_EQ(nameOfMessageBoxStyle(style), name) << style;
}

}  // namespace
}  // namespace pdx
