// The base class's own answers, where the application puts others in their place.
#include <gtest/gtest.h>

#include "core/BaseApplication.h"
#include "harness/engine/SmallEngine.h"

namespace pdx {
namespace {

class Base : public CBalBaseBootstrapperApplication {
  public:
    Base(SmallEngine& engine, const BOOTSTRAPPER_COMMAND& command)
        : CBalBaseBootstrapperApplication(&engine, &command, 1, 0) {}
    using CBalBaseBootstrapperApplication::m_fApplying;
};

struct BaseBench {
    explicit BaseBench(BOOTSTRAPPER_DISPLAY display = BOOTSTRAPPER_DISPLAY_FULL) {
        command.display = display;
        base = new Base(engine, command);
    }
    ~BaseBench() { base->Release(); }
    SmallEngine engine;
    BOOTSTRAPPER_COMMAND command = {};
    Base* base;
};

constexpr auto timeout = static_cast<HRESULT>(0x80072ee2);
constexpr auto generic = static_cast<HRESULT>(0x80070643);

TEST(BaseApplication, AsksAgainForHttpAuthenticationOnAFullDisplay) {
    const std::tuple<BOOTSTRAPPER_DISPLAY, BOOTSTRAPPER_ERROR_TYPE, int> rows[] = {
        {BOOTSTRAPPER_DISPLAY_FULL, BOOTSTRAPPER_ERROR_TYPE_HTTP_AUTH_SERVER, IDTRYAGAIN},
        {BOOTSTRAPPER_DISPLAY_FULL, BOOTSTRAPPER_ERROR_TYPE_HTTP_AUTH_PROXY, IDTRYAGAIN},
        {BOOTSTRAPPER_DISPLAY_PASSIVE, BOOTSTRAPPER_ERROR_TYPE_HTTP_AUTH_SERVER, 7},
        {BOOTSTRAPPER_DISPLAY_FULL, BOOTSTRAPPER_ERROR_TYPE_APPLY, 7},
    };
    for (const auto& [display, type, answer] : rows) {
        BaseBench bench(display);
        EXPECT_EQ(bench.base->OnError(type, L"p", 401, L"", 0, 0, nullptr, 7), answer);
    }
}

TEST(BaseApplication, EndsApplyingAndAsksForARestart) {
    BaseBench bench;
    Base& base = *bench.base;
    base.OnApplyBegin();
    EXPECT_TRUE(base.m_fApplying);
    EXPECT_EQ(base.OnApplyComplete(S_OK, BOOTSTRAPPER_APPLY_RESTART_REQUIRED), resultRestart);
    EXPECT_FALSE(base.m_fApplying);
    EXPECT_EQ(base.OnApplyComplete(S_OK, BOOTSTRAPPER_APPLY_RESTART_INITIATED), 0);
}

TEST(BaseApplication, TellsItsParentEveryKindOfProgress) {
    BaseBench bench(BOOTSTRAPPER_DISPLAY_EMBEDDED);
    Base& base = *bench.base;
    bench.engine.answers.embeddedResult = IDOK;
    EXPECT_EQ(base.OnProgress(3, 4), IDOK);
    base.OnCacheAcquireProgress(L"p", L"l", 1, 2, 50);
    base.OnExecuteProgress(L"p", 5, 6);
    BaseBench alone;
    EXPECT_EQ(alone.base->OnProgress(3, 4), 0);
    EXPECT_TRUE(alone.engine.calls().empty());
    EXPECT_EQ(bench.engine.callTexts("SendEmbeddedProgress"),
              (std::vector<std::string>{"SendEmbeddedProgress(3, 4)", "SendEmbeddedProgress(3, 4)",
                                        "SendEmbeddedProgress(5, 6)"}));
    bench.engine.answers.embeddedProgress = E_FAIL;
    EXPECT_EQ(base.OnProgress(0, 0), -1);
    EXPECT_EQ(base.OnCacheAcquireProgress(L"p", L"l", 1, 2, 50), -1);
    EXPECT_EQ(base.OnExecuteProgress(L"p", 5, 6), -1);
    for (const wchar_t* line : {L"Error 0x80004005: Failed to send embedded overall progress.",
                                L"Error 0x80004005: Failed to send embedded cache progress.",
                                L"Error 0x80004005: Failed to send embedded execute progress."}) {
        const auto logged = bench.engine.findLog(line);
        ASSERT_TRUE(logged);
        EXPECT_EQ(logged->text, line);
        EXPECT_EQ(logged->level, BOOTSTRAPPER_LOG_LEVEL_ERROR);
    }
}

}  // namespace
}  // namespace pdx
