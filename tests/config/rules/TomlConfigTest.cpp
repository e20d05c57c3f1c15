#include "config/rules/TomlConfig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "config/rules/ResourceData.h"

namespace pdx {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct Parsed {
    ConfigMap map;
    std::vector<std::string> errors;
};

Parsed parsed(const std::string& text) {
    Parsed result;
    std::istringstream stream(text);
    result.map = parseConfig(stream, [&](const char* function, const char* message) {
        result.errors.push_back(std::string(function) + ": " + message);
    });
    return result;
}

TEST(ParseConfig, FlattensTablesToDottedKeys) {
    const Parsed result = parsed(
        "top = '1'\r\n"
        "dotted.Key.below = '2'\r\n"
        "'' = { b = '3' }\r\n"
        "[app] # a comment\r\n"
        "oer.url = '4'\r\n"
        "inline = { one.two = '5', none = {} }\r\n"
        "[app.deep.er]\r\n"
        "'a b.c' = '6'\r\n"
        "'' = '7'\r\n"
        "[a]\r\n"
        "''.b = '8'\r\n"
        "'.c' = '9'\r\n");
    const std::pair<const char*, const char*> rows[] = {
        {"top", "1"},
        {"dotted.key.below", "2"},
        {".b", "3"},
        {"app.oer.url", "4"},
        {"app.inline.one.two", "5"},
        {"app.deep.er.a b.c", "6"},
        {"app.deep.er.", "7"},
        {"a.b", "8"},
        {"a.c", "9"},  // the path below "a" already begins with the dot
    };
    for (const auto& [key, value] : rows) EXPECT_EQ(result.map.getString(key, "absent"), value) << key;
    EXPECT_EQ(result.map.size(), std::size(rows));
    EXPECT_THAT(result.errors, IsEmpty());
}

TEST(ParseConfig, ReportsANonScalarAndLoadsItsNeighbours) {
    const std::pair<const char*, const char*> rows[] = {
        {"skipped = 1979-05-27", "local_date"},
        {"skipped = 07:32:00", "local_time"},
        {"skipped = 1979-05-27T07:32:00", "local_datetime"},
        {"skipped = 1979-05-27T07:32:00Z", "offset_datetime"},
        {"skipped = [1, 2]", "array"},
        {"skipped = [{ a = 1 }]", "table_array"},
        {"[[table.skipped]]", "table_array"},
    };
    for (const auto& [line, type] : rows) {
        SCOPED_TRACE(line);
        const Parsed result =
            parsed("before = true\n[table]\nabove = true\n" + std::string(line) + "\n[last]\nafter = true\n");
        EXPECT_THAT(result.errors,
                    ElementsAre("pdx::services::settings::TomlConfigVisitor::visit: Unsupported value type (" +
                                std::string(type) + ") found in config file"));
        for (const char* key : {"before", "table.above", "last.after"}) EXPECT_TRUE(result.map.getBool(key, false));
        EXPECT_EQ(result.map.size(), 3u);
    }
}

TEST(ParseConfig, ReturnsNothingForBadToml) {
    for (const char* text : {"a = true\nb = \n", "a = true\na = true\n", "\xEF\xBB\xBF[a]\nb = true"}) {
        const Parsed result = parsed(text);
        EXPECT_EQ(result.map.size(), 0u) << text;
        EXPECT_THAT(result.errors, ElementsAre(HasSubstr("LoadConfigStream: "))) << text;
    }
}

TEST(ParseConfig, RefusesATextThatIsTooLongOrTooDeep) {
    const std::pair<std::string, bool> rows[] = {
        {"# " + std::string(499, '.') + "\na = 1.5", true},
        {"# " + std::string(500, '.') + "\na = 1.5", false},
        {"a = " + std::string(501, '['), false},
        {"a = 1\n#" + std::string((1 << 20) - 7, 'x'), true},
        {"a = 1\n#" + std::string((1 << 20) - 6, 'x'), false},
    };
    for (const auto& [text, read] : rows) {
        const Parsed result = parsed(text);
        EXPECT_EQ(result.map.size(), read ? 1u : 0u) << text.size();
        const std::string refusal = "LoadConfigStream: The text is too long or nested too deeply";
        EXPECT_EQ(result.errors, read ? std::vector<std::string>() : std::vector<std::string>{refusal}) << text.size();
    }
}

TEST(ResourceStreamBuf, EndsAtTheLastByte) {
    const std::string bytes = "ab\xFF";
    ResourceStreamBuf buffer({bytes.data(), static_cast<uint32_t>(bytes.size())});
    EXPECT_EQ(buffer.sbumpc(), 'a');
    EXPECT_EQ(buffer.sbumpc(), 'b');
    EXPECT_EQ(buffer.sbumpc(), 0xFF) << "a byte, not the end";
    EXPECT_EQ(buffer.sbumpc(), std::streambuf::traits_type::eof());
}

}  // namespace
}  // namespace pdx
