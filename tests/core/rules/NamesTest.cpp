#include "core/rules/Names.h"

#include <gtest/gtest.h>

#include <utility>

namespace pdx {
namespace {

/// The last name of an enumeration that counts from 0; every value around its names is out of range.
template <typename Enumeration>
void expectNames(const char* last, int32_t index) {
    EXPECT_STREQ(nameOf(static_cast<Enumeration>(index)), last);
    for (const int32_t outside : {-1, index + 1, INT32_MAX, INT32_MIN})
        EXPECT_STREQ(nameOf(static_cast<Enumeration>(outside)), "<INVALID>") << last << outside;
}

TEST(Names, OfEveryEnumeration) {
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

TEST(Names, OfMessageBoxStyles) {
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
