// What a setting is, from one layer or several.
#include <cpptoml.h>
#include <gmock/gmock.h>
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
    map.set("app.meridian.enableMigration", cpptoml::make_value(true));
    map.set("QA.CURRENTVERSION", text("1"));
    for (const char* key :
         {"app.meridian.enableMigration", "app.meridian.enablemigration", "APP.MERIDIAN.ENABLEMIGRATION"})
        EXPECT_TRUE(map.getBool(key, false)) << key;
    EXPECT_EQ(map.getString("qa.currentVersion"), "1");
    map.set("qa.currentversion", text("2"));
    EXPECT_EQ(map.getString("QA.CURRENTVERSION"), "2") << "another spelling replaces";
    EXPECT_EQ(map.size(), 2u);
    // 'Ä' and 'ä' differ in their second byte, '[' and '@' enclose the letters.
    EXPECT_EQ(loweredAscii<char>("AZaz.[@`{\xc3\x84-\xc3\xa4"), "azaz.[@`{\xc3\x84-\xc3\xa4");
}

TEST(ConfigMap, TurnsNoTypeIntoAnother) {
    struct Row {
        const char* name;
        std::shared_ptr<cpptoml::base> value;
        std::string asText;
        bool asBoolWithTrue;
        bool asBoolWithFalse;
    };
    const Row rows[] = {
        {"text", text("true"), "true", true, false},
        {"empty text", text(""), "", true, false},
        {"whole number", cpptoml::make_value<int64_t>(1), "default", true, false},
        {"true", cpptoml::make_value(true), "default", true, true},
        {"false", cpptoml::make_value(false), "default", false, false},
        {"null", nullptr, "default", true, false},
    };
    for (const Row& row : rows) {
        ConfigMap map;
        map.set("key", row.value);
        EXPECT_EQ(map.getString("key", "default"), row.asText) << row.name;
        EXPECT_EQ(map.getBool("key", true), row.asBoolWithTrue) << row.name;
        EXPECT_EQ(map.getBool("key", false), row.asBoolWithFalse) << row.name;
    }
    EXPECT_EQ(ConfigMap().getString("key", "default"), "default");
    EXPECT_TRUE(ConfigMap().getBool("key", true));
}

using testing::ElementsAre;

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
    struct Row {
        const char* installer;
        const char* overriding;
        bool configurable;
        const char* environmentFile;
        const char* environment;
    };
    const Row rows[] = {
        {"app.environment = \"production\"", "", false, "production.cfg", "production"},
        {"app.environment = \"Production\"", "", false, "integration.cfg", "Production"},
        {"app.environment = \"\"", "", false, "integration.cfg", ""},
        {"app.environment = true", "", false, "integration.cfg", ""},
        {"", "", false, "integration.cfg", ""},
        {"a broken file", "", false, "integration.cfg", ""},
        {"app.environment = \"production\"", "app.environment = \"qa7\"", true, "integration.cfg", "qa7"},
        {"app.environment = \"production\"", "app.environment = \"qa7\"", false, "production.cfg", "production"},
        {"app.environment = \"qa7\"", "app.environment = \"production\"", true, "production.cfg", "production"},
        {"app.environment = \"production\"", "a broken file", true, "production.cfg", "production"},
    };
    for (const Row& row : rows) {
        Layers layers{{{"installer.cfg", row.installer}, {overrideFile, row.overriding}}, {}};
        const ConfigMap config = layers.loadAll(row.configurable);
        EXPECT_EQ(layers.asked.at(row.configurable ? 2 : 1), row.environmentFile) << row.installer << row.overriding;
        EXPECT_EQ(config.getString("app.environment", "absent"), row.environment) << row.installer << row.overriding;
    }
}

TEST(ConfigLayers, LetsTheStrongerLayerWin) {
    Layers layers{{{"installer.cfg",
                    "app.environment = \"production\"\none = \"installer\"\ntwo = \"installer\"\n"
                    "three = \"installer\"\n"},
                   {"production.cfg", "two = \"production\"\nthree = \"production\"\nfour = \"production\"\n"},
                   {overrideFile, "three = \"override\"\nfive = \"override\"\n"}},
                  {}};
    const std::pair<const char*, const char*> rows[] = {{"one", "installer"},
                                                        {"two", "production"},
                                                        {"three", "override"},
                                                        {"four", "production"},
                                                        {"five", "override"}};
    const ConfigMap config = layers.loadAll(true);
    for (const auto& [key, layer] : rows) EXPECT_EQ(config.getString(key), layer) << key;
    const ConfigMap locked = layers.loadAll(false);
    EXPECT_EQ(locked.getString("three"), "production");
    EXPECT_EQ(locked.getString("five", "absent"), "absent");
}

TEST(ConfigLayers, SetsItsOwnValuesLast) {
    // The environment that decided is kept even where a later layer says otherwise.
    Layers layers{{{"installer.cfg", "app.environment = \"production\"\napp.installertype = \"installer\""},
                   {"production.cfg", "app.environment = 5\napp.installertype = \"production\""},
                   {overrideFile, "app.installertype = \"override\""}},
                  {}};
    for (const bool configurable : {false, true}) {
        EXPECT_EQ(layers.loadAll(configurable, true).getString("app.installertype"), "thin");
        EXPECT_EQ(layers.loadAll(configurable, false).getString("app.installertype"), "thick");
        EXPECT_EQ(layers.loadAll(configurable).getString("app.environment"), "production");
    }
}

TEST(ReportedVersion, FollowsTheOverride) {
    const std::tuple<const char*, const char*, const char*, bool> rows[] = {
        {"", "", "12.37.0.5294", false},
        {"", "12.37.0.5294", "12.37.0.5294", false},
        {"9.0", "", "9.0", true},
        {"9.0", "12.37.0.5294", "9.0", true},
        {"9.0", "12.37.0.5293", "12.37.0.5294", false},
        {"12.37.0.5294", "", "12.37.0.5294", true},
    };
    for (const auto& [overriding, toOverride, reported, overridden] : rows) {
        const ReportedVersion result = reportedVersion("12.37.0.5294", overriding, toOverride);
        EXPECT_EQ(result.version, reported) << overriding << "/" << toOverride;
        EXPECT_EQ(result.overridden, overridden) << overriding << "/" << toOverride;
    }
}

}  // namespace
}  // namespace pdx
