#include "ui/dialog/rules/PageFlow.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

TEST(PageFlow, ShowsPromptsToAWatchingUserOnly) {
    EXPECT_TRUE(isPromptShown(BOOTSTRAPPER_DISPLAY_FULL));
    EXPECT_TRUE(isPromptShown(BOOTSTRAPPER_DISPLAY_EMBEDDED));
    for (const auto display : {BOOTSTRAPPER_DISPLAY_UNKNOWN, BOOTSTRAPPER_DISPLAY_NONE, BOOTSTRAPPER_DISPLAY_PASSIVE})
        EXPECT_FALSE(isPromptShown(display));
}

TEST(PageFlow, AnswersTheEngine) {
    EXPECT_EQ(connectionAnswer(resultOk), resultRetry);
    for (const int button : {0, 2, 4, 7}) EXPECT_EQ(connectionAnswer(button), resultCancel);
    EXPECT_EQ(exitCodeOf(0), 0u);
    EXPECT_EQ(exitCodeOf(1), 0u);
    EXPECT_EQ(exitCodeOf(static_cast<int32_t>(0x80070643)), 1u);
    EXPECT_TRUE(isRestartWanted(BOOTSTRAPPER_APPLY_RESTART_REQUIRED));
    EXPECT_TRUE(isRestartWanted(BOOTSTRAPPER_APPLY_RESTART_INITIATED));
    for (const int restart : {0, 3, -1}) EXPECT_FALSE(isRestartWanted(restart));
}

}  // namespace
}  // namespace pdx
