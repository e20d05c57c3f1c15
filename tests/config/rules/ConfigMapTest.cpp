#include "config/rules/ConfigMap.h"

#include <cpptoml.h>
#include <gtest/gtest.h>

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
        {"floating number", cpptoml::make_value(1.0), "default", true, false},
        {"true", cpptoml::make_value(true), "default", true, true},
        {"false", cpptoml::make_value(false), "default", false, false},
        {"table", cpptoml::make_table(), "default", true, false},
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

TEST(ConfigMap, LetsTheMergedMapWin) {
    ConfigMap lower;
    lower.set("kept", text("lower"));
    lower.set("Replaced", text("lower"));
    lower.set("changesType", cpptoml::make_value(true));
    ConfigMap upper;
    upper.set("REPLACED", text("upper"));
    upper.set("changestype", text("upper"));
    upper.set("added", text("upper"));
    lower.merge(upper);
    EXPECT_EQ(lower.size(), 4u);
    EXPECT_EQ(lower.getString("kept"), "lower");
    EXPECT_EQ(lower.getString("replaced"), "upper");
    EXPECT_FALSE(lower.getBool("changestype", false));
    EXPECT_EQ(lower.getString("added"), "upper");
}

}  // namespace
}  // namespace pdx
