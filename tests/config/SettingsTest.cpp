#include "config/Settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <sstream>

#include "tests/platform/CapturedLog.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Configuration, ReturnsTheDefaultsWithoutSettings) {
    g_config.clear();
    EXPECT_EQ(getConfigString("app.environment", "default"), "default");
    EXPECT_EQ(getConfigWideString("app.environment", L"default"), L"default");
    EXPECT_TRUE(getConfigBool("app.dev", true) && !getConfigBool("app.dev", false));
}

TEST(LoadConfigStream, LogsTheErrorsTextAsAFormat) {
    const CapturedLog log;
    std::istringstream stream("\n100%%s%n = 1\n100%%s%n = 1\n");
    EXPECT_EQ(LoadConfigStream(stream).size(), 0u);
    EXPECT_THAT(log.takeTexts(), ElementsAre("0 LoadConfigStream Key 100%s%n already present at line 3"));
}

TEST(LoadConfigFile, ReadsAFileOfAnyNameThatOthersRead) {
    const TestFolder folder;
    const CapturedLog log;
    const std::wstring path = folder.addFile(L"Gr\u00f6\u00dfe \u6f22.cfg", "a = \"1\x1a\x32\"\nb = \"\xc3\xa4\"");
    const FileHandle reader = holdFile(path, GENERIC_READ, FILE_SHARE_READ);
    ASSERT_TRUE(reader);
    const ConfigMap map = loadConfigFile(toUtf8(path).c_str());
    EXPECT_EQ(map.getString("a"), "1\x1a\x32") << "another process reads it; Ctrl+Z does not end it";
    EXPECT_EQ(map.getWideString("b", L"default"), L"\u00e4");
    for (const std::wstring& missing : {folder.path(L"none.cfg"), folder.path(), std::wstring()})
        EXPECT_EQ(loadConfigFile(toUtf8(missing).c_str()).size(), 0u) << toUtf8(missing);
    EXPECT_THAT(log.take(), IsEmpty());
}

}  // namespace
}  // namespace pdx
