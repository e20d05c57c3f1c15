#include "config/Settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <sstream>

#include "platform/Handles.h"
#include "tests/platform/CapturedLog.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Configuration, GivesTheDefaultsWhileThereIsNone) {
    g_config.clear();
    EXPECT_EQ(getConfigString("app.environment", "default"), "default");
    EXPECT_EQ(getConfigWideString("app.environment", L"default"), L"default");
    EXPECT_TRUE(getConfigBool("app.dev", true));
    EXPECT_FALSE(getConfigBool("app.dev", false));
}

TEST(LoadConfigStream, LogsTheErrorsTextAsAFormat) {
    const std::pair<const char*, const char*> rows[] = {
        {"a = \n", "Failed to parse value type at line 1"},
        {"\n100%%s%n = 1\n100%%s%n = 1\n", "Key 100%s%n already present at line 3"},
    };
    const CapturedLog log;
    for (const auto& [text, message] : rows) {
        std::istringstream stream(text);
        EXPECT_EQ(LoadConfigStream(stream).size(), 0u);
        EXPECT_THAT(log.take(), ElementsAre(LogEntry{logError, "LoadConfigStream", message}));
    }
    std::istringstream longStream("'" + std::string(100'000, 'k') + "' = 1\n'" + std::string(100'000, 'k') + "' = 1");
    LoadConfigStream(longStream);
    EXPECT_THAT(log.take(), ElementsAre(LogEntry{logError, "LoadConfigStream", "Key " + std::string(4091, 'k')}));
}

TEST(LoadConfigFile, ReadsAFileWhereverItLies) {
    const TestFolder folder;
    const CapturedLog log;
    const std::wstring path = folder.addFile(L"Gr\u00f6\u00dfe \u6f22.cfg", "a = \"1\x1a\x32\"\nb = \"\xc3\xa4\"");
    const FileHandle reader(
        CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(reader);
    const ConfigMap map = loadConfigFile(toUtf8(path).c_str());
    EXPECT_EQ(map.getString("a"), "1\x1a\x32") << "while somebody else reads it, and past a Ctrl+Z";
    EXPECT_EQ(map.getWideString("b", L"default"), L"\u00e4");
    EXPECT_EQ(map.getWideString("c", L"\u00fc"), L"\u00fc");
    for (const std::wstring& missing : {folder.path(L"none.cfg"), folder.path(), std::wstring(), std::wstring(L"*")})
        EXPECT_EQ(loadConfigFile(toUtf8(missing).c_str()).size(), 0u) << toUtf8(missing);
    EXPECT_THAT(log.take(), IsEmpty());
}

}  // namespace
}  // namespace pdx
