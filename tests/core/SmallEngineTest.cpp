// The small engine itself: its operations as the real engine answers them, and its order of slots. What is expected
// here was seen on the real engine.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/BaseApplication.h"
#include "harness/engine/EngineRun.h"

namespace pdx {
namespace {

constexpr auto packageFailure = static_cast<HRESULT>(0x80070643);

/// Drives the engine from its callbacks, and does nothing else.
class DrivingApplication : public CBalBaseBootstrapperApplication {
  public:
    DrivingApplication(SmallEngine& engine, const BOOTSTRAPPER_COMMAND& command)
        : CBalBaseBootstrapperApplication(&engine, &command, 0, 0) {}
    HRESULT STDMETHODCALLTYPE OnStartup() override { return m_pEngine->Detect(nullptr); }
    void STDMETHODCALLTYPE OnDetectComplete(HRESULT) override { m_pEngine->Plan(BOOTSTRAPPER_ACTION_INSTALL); }
    void STDMETHODCALLTYPE OnPlanComplete(HRESULT) override { m_pEngine->Apply(nullptr); }
    int STDMETHODCALLTYPE OnApplyComplete(HRESULT hr, BOOTSTRAPPER_APPLY_RESTART) override {
        if (!silent) m_pEngine->Quit(FAILED(hr) ? 1 : 0);
        return 0;
    }
    bool silent = false;
};

struct SmallEngineTest : testing::Test {
    RunOutcome run(EngineScript script, SlotHook hook = {}) {
        return EngineRun(engine, application, std::move(script), std::move(hook)).run();
    }
    SmallEngine engine;
    BOOTSTRAPPER_COMMAND command = {};
    DrivingApplication application{engine, command};
};

TEST_F(SmallEngineTest, AnswersForVariablesAsTheEngine) {
    engine.SetVariableString(L"text", L"abc");
    engine.SetVariableNumeric(L"number", -12);
    engine.SetVariableString(L"nested", L"<[text]|[number]>");
    const struct {
        HRESULT (STDMETHODCALLTYPE SmallEngine::*ask)(LPCWSTR, LPWSTR, DWORD*);
        const wchar_t* in;
        DWORD size;
        HRESULT result;
        DWORD sizeAfter;
        const wchar_t* out;
    } rows[] = {
        {&SmallEngine::GetVariableString, L"text", 4, S_OK, 4, L"abc"},
        {&SmallEngine::GetVariableString, L"text", 3, HRESULT_FROM_WIN32(ERROR_MORE_DATA), 4, L"ab"},
        {&SmallEngine::GetVariableString, L"number", 9, S_OK, 9, L"-12"},
        {&SmallEngine::GetVariableString, L"TEXT", 9, static_cast<HRESULT>(0x80070490), 9, L""},
        {&SmallEngine::FormatString, L"[nested][nope][\\[]x[]]", 20, S_OK, 20, L"<abc|-12>[x[]]"},
        // The size that a formatted text needs is told without its zero.
        {&SmallEngine::FormatString, L"[text]", 3, HRESULT_FROM_WIN32(ERROR_MORE_DATA), 3, L"ab"},
        {&SmallEngine::EscapeString, L"a[", 20, S_OK, 20, L"a[\\[]"},
    };
    for (const auto& row : rows) {
        wchar_t buffer[32] = {};
        DWORD size = row.size;
        EXPECT_EQ((engine.*row.ask)(row.in, buffer, &size), row.result) << row.in;
        EXPECT_EQ(size, row.sizeAfter) << row.in;
        EXPECT_STREQ(buffer, row.out);
    }
}

TEST_F(SmallEngineTest, RollsBackWhatItBeganWhenAPackageFails) {
    EngineScript script;
    script.packages = {{.id = L"a"}, {.id = L"b", .execute = {packageFailure}}};
    std::vector<std::string> executed;
    const auto outcome = run(script, [&](const SlotEvent& event) {
        if (!event.returned && event.slot.starts_with("OnExecutePackage"))
            executed.push_back(std::string(event.slot.substr(16)) + ' ' + static_cast<char>(event.package[0]));
    });
    EXPECT_THAT(executed, testing::ElementsAre("Begin a", "Complete a", "Begin b", "Complete b",  // and back
                                               "Begin b", "Complete b", "Begin a", "Complete a"));
    EXPECT_EQ(outcome.apply, packageFailure);
    EXPECT_NE(outcome.find("OnCacheBegin")->threadId, outcome.find("OnExecuteBegin")->threadId);
}

TEST_F(SmallEngineTest, EndsWithTheLastQuitAndTellsOfARunWithoutOne) {
    const auto outcome = run({}, [&](const SlotEvent& event) {
        if (event.slot == "OnDetectBegin" && !event.returned) engine.Quit(7);
    });
    EXPECT_EQ(outcome.apply, S_OK) << "a detection under way goes on, and what comes of it";
    EXPECT_THAT(engine.callTexts(), testing::ElementsAre("Detect(0)", "Quit(7)", "Plan(5)", "Apply(0)", "Quit(0)"));
    EXPECT_EQ(outcome.exitCode, 0u);

    application.silent = true;
    EXPECT_THAT(run({.idleBound = 50}).failure, testing::HasSubstr("nobody called Quit"));
}

}  // namespace
}  // namespace pdx
