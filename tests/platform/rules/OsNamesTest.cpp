#include "platform/rules/OsNames.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

TEST(OsNames, ANumberOutOfRangeHasNoText) {
    EXPECT_EQ(osName(static_cast<osInfoValue>(0)), "Win Unknown");
    EXPECT_EQ(osName(static_cast<osInfoValue>(19)), "Wine 8");
    for (const int32_t number : {-1, 20}) EXPECT_EQ(osName(static_cast<osInfoValue>(number)), std::nullopt) << number;
}

struct VersionCase {
    uint32_t major, minor, build;
    const char* name;
};

void expectNames(std::initializer_list<uint8_t> productTypes, std::initializer_list<VersionCase> cases) {
    for (const uint8_t productType : productTypes)
        for (const VersionCase& row : cases)
            EXPECT_EQ(osName(windowsName({row.major, row.minor, row.build, productType})), row.name)
                << row.major << '.' << row.minor << '.' << row.build << " of type " << int{productType};
}

TEST(OsNames, ASystemIsNamedByTheFirstThresholdItReaches) {
    expectNames({1}, {{10, 1, 0, "Win 11"},
                      {10, 0, 22000, "Win 11"},
                      {10, 0, 21999, "Win 10"},
                      {10, 0, 0, "Win 10"},
                      {9, 9, 99999, "Win 8.1"},
                      {6, 3, 0, "Win 8.1"},
                      {6, 2, 99999, "Win 8"},
                      {6, 2, 0, "Win 8"},
                      {6, 1, 0, "Win 7"},
                      {6, 0, 6002, "Win Old"}});
    expectNames({0, 2, 3}, {{10, 0, 20348, "Win Server 2022"},
                            {10, 0, 20347, "Win Server 2019"},
                            {10, 0, 17763, "Win Server 2019"},
                            {10, 0, 17762, "Win Server 2016"},
                            {10, 0, 0, "Win Server 2016"},
                            {6, 3, 0, "Win Server 2012 R2"},
                            {6, 2, 0, "Win Server 2012"},
                            {6, 1, 0, "Win Server 2008 R2"},
                            {6, 0, 0, "Win Server 2008"},
                            {5, 2, 3790, "Win Server Old"}});
}

TEST(OsNames, AWineIsNamedByItsThreeNumbers) {
    const std::pair<const char*, const char*> rows[] = {
        {"8.0.2 (Debian 8.0~repack-4)", "Wine 8"},
        {"9.21.1", "Wine 8"},
        {"7.99.9", "Wine 7 Development"},
        {"7.1.0-rc1", "Wine 7 Development"},
        {"7.0.99", "Wine 7"},
        {"7.0.0", "Wine 7"},
        {"6.23.0", "Wine Old"},
        {"0.9.0", "Wine Old"},
        {"0.8.99", "Wine Unknown"},
        {"8.0 (Debian 8.0~repack-4)", "Wine Unknown"},
        {"wine-8.0.1", "Wine Unknown"},
        {"", "Wine Unknown"},
        {nullptr, "Wine Unknown"},
    };
    for (const auto& [version, name] : rows)
        EXPECT_EQ(osName(wineName(parseWineVersion(version))), name) << (version ? version : "(null)");
}

}  // namespace
}  // namespace pdx
