#include "core/rules/Names.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pdx {
namespace {

/// The names of an enumeration from 0 on; every value around them is out of range.
template <typename Enumeration>
void expectNames(const std::string& prefix, const std::vector<std::string>& names) {
    for (size_t i = 0; i < names.size(); ++i) EXPECT_EQ(nameOf(static_cast<Enumeration>(i)), prefix + names[i]) << i;
    for (const int64_t outside :
         {int64_t{-1}, static_cast<int64_t>(names.size()), int64_t{INT32_MAX}, int64_t{INT32_MIN}})
        EXPECT_STREQ(nameOf(static_cast<Enumeration>(outside)), "<INVALID>") << prefix << outside;
}

TEST(Names, OfEveryEnumeration) {
    expectNames<BOOTSTRAPPER_ACTION_STATE>("BOOTSTRAPPER_ACTION_STATE_",
                                           {"NONE", "UNINSTALL", "INSTALL", "ADMIN_INSTALL", "MODIFY", "REPAIR",
                                            "MINOR_UPGRADE", "MAJOR_UPGRADE", "PATCH"});
    expectNames<BOOTSTRAPPER_PACKAGE_STATE>("BOOTSTRAPPER_PACKAGE_STATE_",
                                            {"UNKNOWN", "OBSOLETE", "ABSENT", "CACHED", "PRESENT", "SUPERSEDED"});
    expectNames<BOOTSTRAPPER_RELATED_OPERATION>(
        "BOOTSTRAPPER_RELATED_OPERATION_",
        {"NONE", "DOWNGRADE", "MINOR_UPDATE", "MAJOR_UPGRADE", "REMOVE", "INSTALL", "REPAIR"});
    expectNames<BOOTSTRAPPER_RELATION_TYPE>("BOOTSTRAPPER_RELATION_",
                                            {"NONE", "DETECT", "UPGRADE", "ADDON", "PATCH", "DEPENDENT", "UPDATE"});
    expectNames<BOOTSTRAPPER_REQUEST_STATE>("BOOTSTRAPPER_REQUEST_STATE_",
                                            {"NONE", "FORCE_ABSENT", "ABSENT", "CACHE", "PRESENT", "REPAIR"});
    expectNames<BOOTSTRAPPER_FEATURE_STATE>("BOOTSTRAPPER_FEATURE_STATE_",
                                            {"UNKNOWN", "ABSENT", "ADVERTISED", "LOCAL", "SOURCE"});
    expectNames<BOOTSTRAPPER_ERROR_TYPE>("BOOTSTRAPPER_ERROR_TYPE_", {"ELEVATE", "WINDOWS_INSTALLER", "EXE_PACKAGE",
                                                                      "HTTP_AUTH_SERVER", "HTTP_AUTH_PROXY", "APPLY"});
    expectNames<BOOTSTRAPPER_APPLY_RESTART>("BOOTSTRAPPER_APPLY_RESTART_", {"NONE", "REQUIRED", "INITIATED"});
    expectNames<BOOTSTRAPPER_CACHE_OPERATION>("BOOTSTRAPPER_CACHE_OPERATION_", {"COPY", "DOWNLOAD", "EXTRACT"});
    EXPECT_STREQ(nameOf(PALISADE_ERROR_TYPE), "<INVALID>");
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
