#include "core/rules/InstallStatus.h"

#include <gtest/gtest.h>

#include <vector>

#include "core/rules/ErrorGroups.h"

namespace pdx {
namespace {

constexpr Hresult hr(uint32_t bits) { return static_cast<Hresult>(bits); }

TEST(InstallStatus, KeepsTheMostExactCode) {
    struct Step {
        uint32_t given;
        uint32_t status;
        uint32_t lastError;
    };
    const std::vector<std::vector<Step>> stories = {
        // A generic failure does not hide an exact one.
        {{0x80070005, 0x80070005, 0x80070005}, {0x80070643, 0x80070005, 0x80070005}},
        {{0x80070005, 0x80070005, 0x80070005}, {0x8007FFFF, 0x80070005, 0x80070005}},
        // Nor does a user exit: the run stays a failure.
        {{0x80070002, 0x80070002, 0x80070002}, {0xA0010642, 0x80070002, 0x80070002}},
        // As the first code both are kept.
        {{0x80070642, 0x80070642, 0x80070642}},
        {{0x80070643, 0x80070643, 0x80070643}, {0x80070005, 0x80070005, 0x80070005}},
        // An exact one replaces an exact one.
        {{0x80070005, 0x80070005, 0x80070005}, {0x80070002, 0x80070002, 0x80070002}},
        // A success replaces the status and never the last error; a generic failure after it is a change of the
        // status's sign, and none of the error.
        {{0x80070002, 0x80070002, 0x80070002}, {0, 0, 0x80070002}, {0x80070643, 0x80070643, 0x80070002}},
        // A success replaces another only if its code is exact.
        {{1, 1, 0}, {1603, 1, 0}, {2, 2, 0}},
    };
    for (size_t story = 0; story < stories.size(); ++story) {
        InstallStatus status;
        for (const Step& step : stories[story]) {
            status.update(hr(step.given), Operation{1}, {});
            EXPECT_EQ(status.status, hr(step.status)) << story << std::hex << ": " << step.given;
            EXPECT_EQ(status.lastError, hr(step.lastError)) << story << std::hex << ": " << step.given;
        }
    }
}

TEST(InstallStatus, KeepsOperationAndContextOfTheError) {
    InstallStatus status;
    EXPECT_FALSE(status.update(0, Operation{5}, {{"pkid", "a"}}));
    EXPECT_TRUE(status.update(hr(0x80070005), Operation{7}, {{"pkid", "b"}}));
    EXPECT_FALSE(status.update(hr(0x80070643), Operation{9}, {{"pkid", "c"}}));
    EXPECT_EQ(status.errorOperation, Operation{7});
    EXPECT_EQ(status.errorContext, nlohmann::json({{"pkid", "b"}}));
    status.errorShown = true;
    status.update(hr(0x80070642), Operation{9}, {});
    EXPECT_TRUE(status.errorShown);
    status.update(1, Operation{9}, {});
    EXPECT_FALSE(status.errorShown);
}

TEST(Outcome, FollowsTheStatus) {
    EXPECT_EQ(outcomeOf(0), Outcome::succeeded);
    EXPECT_EQ(outcomeOf(1602), Outcome::succeeded);
    EXPECT_EQ(outcomeOf(hr(0x80070642)), Outcome::cancelled);
    EXPECT_EQ(outcomeOf(hr(0xA0000642)), Outcome::cancelled);
    EXPECT_EQ(outcomeOf(hr(0x80070643)), Outcome::failed);
    EXPECT_EQ(outcomeOf(hr(0xA7FF61A8)), Outcome::failed);
}

TEST(ErrorGroups, MatchACodeInLowerCase) {
    const struct {
        const char* group;
        bool invalid;
        std::vector<const char*> codes;
    } rows[] = {
        {"dnlv", false, {"80070070", "a001051b", "a0010641", "80070642", "a0000642"}},
        {"system", true, {"80070005", "8007064c", "80070780", "80070783"}},
        {"system", false, {"80070652"}},
        {"network", true, {"80072ee2", "80072efd", "80072eff", "80072f0d", "80072f78", "80072f7d"}},
        {"unknown", true, {"80070643", "a7ff61a8", "A001051B", "80072EE2", "80072ee3", ""}},
    };
    for (const auto& row : rows)
        for (const char* code : row.codes) {
            EXPECT_EQ(errorGroup(code).group, row.group) << code;
            EXPECT_EQ(errorGroup(code).invalid, row.invalid) << code;
        }
}

}  // namespace
}  // namespace pdx
