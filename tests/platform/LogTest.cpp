#include "platform/Log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "harness/programs/engine/SmallEngine.h"
#include "platform/Processes.h"

namespace pdx {
namespace {

class LogTest : public testing::Test {
  protected:
    LogTest() { g_logger.set(std::make_shared<BootstrapperLogger>(&engine)); }
    ~LogTest() override { g_logger.clear(); }

    /// The line's beginning up to the function's name.
    static std::wstring head(const wchar_t* word) {
        return std::wstring(L"PDXBA") + (isElevated() ? L"*" : L" ") + L" " + word + L" (";
    }

    SmallEngine engine;
};

TEST_F(LogTest, SendsEachLevelToTheEngineAndDropsHigherOnes) {
    for (const int32_t level : {0, 1, 2, 3, 4, 5, 6, 99999, -1, INT32_MIN}) logMessage(level, "f", 7, "m");
    const std::pair<int32_t, const wchar_t*> expected[] = {{4, L"ERROR"}, {1, L"WARN "}, {1, L"INFO "}, {3, L"DEBUG"},
                                                           {2, L"TRACE"}, {2, L"TRACE"}, {2, L"TRACE"}};
    ASSERT_EQ(engine.logCount(), std::size(expected));
    for (size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_EQ(engine.log()[i].level, expected[i].first);
        EXPECT_EQ(engine.log()[i].text, head(expected[i].second) + L"f:7) m");
    }
}

TEST_F(LogTest, FormatsNarrowAndWideTextAndFillsInTheLine) {
    const int32_t line = __LINE__ + 1;
    PDX_LOG(logInfo, "Klasse::größe", "%s|%ls|%08x|%d%%", "ä€", L"ö\U0001F600", 0xA7FF0BC9u, -5);
    ASSERT_EQ(engine.logCount(), 1u);
    EXPECT_EQ(engine.log()[0].text,
              head(L"INFO ") + L"Klasse::größe:" + std::to_wstring(line) + L") ä€|ö\U0001F600|a7ff0bc9|-5%");
}

TEST_F(LogTest, CutsALongMessageAndReplacesBadText) {
    logMessage(logTrace, "f", 1, std::string(5000, 'a').c_str());
    EXPECT_EQ(engine.log().back().text, head(L"TRACE") + L"f:1) " + std::wstring(4095, L'a'));
    const std::wstring loneSurrogate = {L'a', wchar_t{0xD800}, L'b'};
    PDX_LOG(logTrace, "f", "%ls %s %ls", loneSurrogate, static_cast<const char*>(nullptr),
            static_cast<const wchar_t*>(nullptr));
    EXPECT_THAT(engine.log().back().text, testing::EndsWith(L") a\xFFFD"
                                                            L"b (null) (null)"));
}

}  // namespace
}  // namespace pdx
