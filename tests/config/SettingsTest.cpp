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

/// Leaves the process without settings, as it was.
class ConfigurationTest : public testing::Test {
  protected:
    ~ConfigurationTest() override {
        g_config.clear();
        g_configurable = false;
    }
    /// Where there is no override file nothing asks.
    static void load(bool thinInstaller) {
        loadConfiguration(thinInstaller, [] {
            ADD_FAILURE() << "asked whether the machine may change the settings";
            return true;
        });
    }
};

TEST_F(ConfigurationTest, HasTheShippedValues) {
    const CapturedLog log;
    determineConfigurable();
    EXPECT_FALSE(g_configurable);
    load(false);
    EXPECT_THAT(log.take(), IsEmpty());

    EXPECT_FALSE(getConfigBool("app.dev", true));
    const std::pair<const char*, std::string> endings[] = {
        {"app.environment", "production"},
        {"app.installertype", "thick"},
        {"updater.url", ".example"},
        {"installer.downloadurl", "/Palisade-Desktop-Client-Download/installer-releases/PalisadeappInstaller.exe"},
        {"telemetry.tally.url", "/tallyEvents"},
        {"qa.currentVersion", ""},
    };
    for (const auto& [key, ending] : endings) EXPECT_THAT(getConfigString(key), testing::EndsWith(ending)) << key;
    load(true);
    EXPECT_EQ(getConfigString("app.installertype"), "thin");
}

TEST_F(ConfigurationTest, GivesTheDefaultsWhileThereIsNone) {
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

TEST(LoadConfigResource, GivesNothingForAMissingOne) {
    const CapturedLog log;
    EXPECT_EQ(loadConfigResource("no.cfg").size(), 0u);
    EXPECT_THAT(log.take(), IsEmpty());
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
