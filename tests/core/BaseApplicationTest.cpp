// The base class's own answers, where the application puts others in their place.
#include <gtest/gtest.h>

#include "core/BaseApplication.h"
#include "harness/engine/SmallEngine.h"

namespace pdx {
namespace {

struct Base : CBalBaseBootstrapperApplication {
    Base(SmallEngine& engine, const BOOTSTRAPPER_COMMAND& command)
        : CBalBaseBootstrapperApplication(&engine, &command, 1, 0) {}
};

struct ProbedBase {
    explicit ProbedBase(BOOTSTRAPPER_DISPLAY display = BOOTSTRAPPER_DISPLAY_FULL) {
        command.display = display;
        base = new Base(engine, command);
    }
    ~ProbedBase() { base->Release(); }
    SmallEngine engine;
    BOOTSTRAPPER_COMMAND command = {};
    Base* base;
};

TEST(BaseApplication, TellsItsParentEveryKindOfProgress) {
    ProbedBase probed(BOOTSTRAPPER_DISPLAY_EMBEDDED);
    Base& base = *probed.base;
    probed.engine.answers.embeddedResult = IDOK;
    EXPECT_EQ(base.OnProgress(3, 4), IDOK);
    base.OnCacheAcquireProgress(L"p", L"l", 1, 2, 50);
    base.OnExecuteProgress(L"p", 5, 6);
    ProbedBase alone;
    EXPECT_EQ(alone.base->OnProgress(3, 4), 0);
    EXPECT_TRUE(alone.engine.calls().empty());
    EXPECT_EQ(probed.engine.callTexts("SendEmbeddedProgress"),
              (std::vector<std::string>{"SendEmbeddedProgress(3, 4)", "SendEmbeddedProgress(3, 4)",
                                        "SendEmbeddedProgress(5, 6)"}));
    probed.engine.answers.embeddedProgress = E_FAIL;
    EXPECT_EQ(base.OnProgress(0, 0), -1);
    EXPECT_EQ(base.OnCacheAcquireProgress(L"p", L"l", 1, 2, 50), -1);
    EXPECT_EQ(base.OnExecuteProgress(L"p", 5, 6), -1);
    for (const wchar_t* line : {L"Error 0x80004005: Failed to send embedded overall progress.",
                                L"Error 0x80004005: Failed to send embedded cache progress.",
                                L"Error 0x80004005: Failed to send embedded execute progress."}) {
        const auto logged = probed.engine.findLog(line);
        ASSERT_TRUE(logged);
        EXPECT_EQ(logged->text, line);
        EXPECT_EQ(logged->level, BOOTSTRAPPER_LOG_LEVEL_ERROR);
    }
}

}  // namespace
}  // namespace pdx
