// What a setting is, from one layer or several.
#include <cpptoml.h>
#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <vector>

#include "config/rules/ConfigLayers.h"
#include "config/rules/ConfigMap.h"
#include "config/rules/TomlConfig.h"
#include "platform/rules/AsciiCase.h"

namespace pdx {
namespace {

std::shared_ptr<cpptoml::base> text(const char* value) { return cpptoml::make_value<std::string>(value); }

TEST(ConfigMap, FindsAKeyInAnyCase) {
    ConfigMap map;
    map.set("QA.CurrentVersion", text("1"));
    EXPECT_EQ(map.getString("qa.currentVersion"), "1");
    map.set("qa.currentversion", text("2"));
    EXPECT_EQ(map.getString("QA.CURRENTVERSION"), "2") << "another spelling replaces";
    EXPECT_EQ(map.size(), 1u);
    // 'Ä' and 'ä' differ in their second byte, '[' and '@' enclose the letters.
    EXPECT_EQ(loweredAscii<char>("AZaz.[@`{\xc3\x84-\xc3\xa4"), "azaz.[@`{\xc3\x84-\xc3\xa4");
}

TEST(ConfigMap, ConvertsNoType) {
    const struct {
        std::shared_ptr<cpptoml::base> value;
        std::string asText;
        bool asBoolWithTrue, asBoolWithFalse;
    } rows[] = {
        {text("true"), "true", true, false},
        {text(""), "", true, false},
        {cpptoml::make_value<int64_t>(1), "default", true, false},
        {cpptoml::make_value(true), "default", true, true},
        {cpptoml::make_value(false), "default", false, false},
        {nullptr, "default", true, false},
    };
    for (const auto& row : rows) {
        ConfigMap map;
        map.set("key", row.value);
        SCOPED_TRACE(row.asText);
        EXPECT_EQ(map.getString("key", "default"), row.asText);
        EXPECT_EQ(map.getBool("key", true), row.asBoolWithTrue);
        EXPECT_EQ(map.getBool("key", false), row.asBoolWithFalse);
    }
}

/// Layers given as texts, and the order in which they were asked for.
struct Layers {
    std::map<std::string, std::string> texts;
    std::vector<std::string> asked;

    ConfigMap load(const std::string& name) {
        asked.push_back(name);
        std::istringstream stream(texts[name]);
        return parseConfig(stream, [](const char*, const char*) {});
    }
    ConfigMap loadAll(bool configurable, bool thin = false) {
        const auto loader = [this](const char* name) { return load(name); };
        return loadConfigLayers({loader, loader}, configurable, thin);
    }
};

constexpr char overrideFile[] = "C:\\PalisadeDesktopDev\\override.cfg";

TEST(ConfigLayers, ChoosesTheEnvironmentsFile) {
    const struct {
        const char *installer, *overriding;
        bool configurable;
        const char *environmentFile, *environment;
    } rows[] = {
        {"app.environment = 'production'", "", false, "production.cfg", "production"},
        {"app.environment = 'Production'", "", false, "integration.cfg", "Production"},
        {"app.environment = true", "", false, "integration.cfg", ""},
        {"a broken file", "", false, "integration.cfg", ""},
        {"app.environment = 'production'", "app.environment = 'qa7'", true, "integration.cfg", "qa7"},
        {"app.environment = 'production'", "app.environment = 'qa7'", false, "production.cfg", "production"},
        {"app.environment = 'qa7'", "app.environment = 'production'", true, "production.cfg", "production"},
        {"app.environment = 'production'", "a broken file", true, "production.cfg", "production"},
    };
    for (const auto& row : rows) {
        Layers layers{{{"installer.cfg", row.installer}, {overrideFile, row.overriding}}, {}};
        const ConfigMap config = layers.loadAll(row.configurable);
        EXPECT_EQ(layers.asked.at(row.configurable ? 2 : 1), row.environmentFile) << row.installer << row.overriding;
        EXPECT_EQ(config.getString("app.environment", "absent"), row.environment) << row.installer << row.overriding;
    }
}

TEST(ConfigLayers, TheStrongerLayerWins) {
    // The environment that chose the file is kept, and the library's own type replaces every other.
    Layers layers{
        {{"installer.cfg", "app.environment = 'production'\napp.installertype = 'x'\na = '1'\nb = '1'\nc = '1'"},
         {"production.cfg", "app.environment = 5\nb = '2'\nc = '2'\nd = '2'"},
         {overrideFile, "app.installertype = 'y'\nc = '3'\ne = '3'"}},
        {}};
    const std::pair<bool, std::string> rows[] = {{true, "12323"}, {false, "1222-"}};
    for (const auto& [configurable, winners] : rows) {
        const ConfigMap config = layers.loadAll(configurable, true);
        std::string values;
        for (const char* key : {"a", "b", "c", "d", "e"}) values += config.getString(key, "-");
        EXPECT_EQ(values, winners);
        EXPECT_EQ(config.getString("app.environment"), "production");
        EXPECT_EQ(config.getString("app.installertype"), "thin");
        EXPECT_EQ(layers.loadAll(configurable, false).getString("app.installertype"), "thick");
    }
}

TEST(ReportedVersion, FollowsTheOverride) {
    const std::tuple<const char*, const char*, const char*, bool> rows[] = {
        {"", "", "12.37.0.5294", false},
        {"9.0", "", "9.0", true},
        {"9.0", "12.37.0.5294", "9.0", true},
        {"9.0", "12.37.0.5293", "12.37.0.5294", false},
    };
    for (const auto& [overriding, toOverride, reported, overridden] : rows) {
        const ReportedVersion result = reportedVersion("12.37.0.5294", overriding, toOverride);
        EXPECT_EQ(std::pair(result.version, result.overridden), std::pair(std::string(reported), overridden));
    }
}

}  // namespace
}  // namespace pdx
