// Whole runs in process: the decisions of a start, what is shown, and how the run ends.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

#include "config/Settings.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"
#include "platform/Text.h"
#include "tests/core/ApplicationProbe.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

bool entered(const RunOutcome& outcome, const char* callback) { return outcome.find(callback) != nullptr; }

TEST(Run, EndsAtTheStartForTheOlderClientThatWasAskedForOnly) {
    const std::tuple<bool, bool, const wchar_t*, bool> rows[] = {
        {true, true, L"1", true}, {false, true, L"1", false}, {true, false, L"1", false}, {true, true, L"", false}};
    for (const auto& [clientPath, gatelink, ignore, quits] : rows) {
        RegistryKey machine = RegistryKey::localMachine(view32), classes = RegistryKey::classesRoot(view64);
        if (clientPath) machine.setSubKeyValue(bastionKey, L"ClientPath", std::wstring(L"C:\\B\\b.exe"));
        if (gatelink) classes.setSubKeyValue(L"gatelink\\shell\\open\\command", {}, std::wstring(L"g.exe"));
        ProbedRun probed;
        probed.ui.answer = UiScript::driveOn;
        probed.engine.variables.set(L"IGNORE_ALREADY_INSTALLED", std::wstring(ignore));
        const RunOutcome outcome = probed.run();
        EXPECT_EQ(outcome.failure, "");
        EXPECT_EQ(entered(outcome, "OnDetectBegin"), !quits) << clientPath << gatelink;
        machine.deleteTree(bastionKey);
        classes.deleteTree(L"gatelink");
    }
}

TEST(Run, PlansNothingAfterAPromptInsideADetection) {
    ProbedRun probed;
    probed.ui.answer = UiScript::driveOn;
    EngineScript script;
    script.package = BOOTSTRAPPER_PACKAGE_STATE_PRESENT;
    const RunOutcome outcome = probed.run(script);
    EXPECT_EQ(outcome.failure, "");
    EXPECT_TRUE(entered(outcome, "OnDetectComplete"));
    EXPECT_FALSE(entered(outcome, "OnPlanBegin"));
    EXPECT_EQ(probed.ui.names(), std::vector<std::string>{"askInstalled"});
}

/// The client is installed, and the older one too where it is there.
RunOutcome startBesideClients(ProbedRun& probed, bool olderThere, const char* migration, const char* prompt,
                              const wchar_t* upgrade) {
    const TestKeys keys{{L"Software\\Corvane Works", bastionKey}};
    RegistryKey machine = RegistryKey::localMachine(view32);
    RegistryKey::localMachine(view64).setSubKeyValue(productKey, L"InstallLocation", std::wstring(L"C:\\Games\\P"));
    if (olderThere) machine.setSubKeyValue(bastionKey, L"InstallSuccesfull", std::wstring(L"true"));
    probed.app();
    std::istringstream settings(std::string("[app.meridian]\nenableMigration = ") + migration +
                                "\npromptBastionUninstall = " + prompt + "\n");
    g_config.set(std::make_shared<ConfigMap>(LoadConfigStream(settings)));  // after the constructor's own
    probed.engine.variables.set(L"PDX_MERIDIAN_UPGRADE", std::wstring(upgrade));
    probed.engine.variables.set(L"PDX_UNINSTALL_BASTION", std::wstring(L"1"));
    probed.engine.clearLog();
    return probed.run();
}

TEST(Run, OffersTheMoveOnlyWhereAllOfItIsWanted) {
    const std::tuple<bool, const char*, const char*, const wchar_t*, const char*> rows[] = {
        {true, "true", "true", L"1", "askAboutBastion"}, {false, "true", "true", L"1", "askInstalled"},
        {true, "false", "true", L"1", "askInstalled"},   {true, "true", "false", L"1", "askInstalled"},
        {true, "true", "true", L"", "askInstalled"},
    };
    for (const auto& [olderThere, migration, prompt, upgrade, offered] : rows) {
        ProbedRun probed;
        startBesideClients(probed, olderThere, migration, prompt, upgrade);
        EXPECT_EQ(probed.ui.names(), std::vector<std::string>{offered}) << olderThere << migration << prompt;
    }
}

TEST(Run, FollowsNoAnswerOfACancelledPrompt) {
    for (const wchar_t* upgrade : {L"", L"1"})
        for (const int answer : {0, 1, 2}) {
            ProbedRun probed;
            probed.ui.answer = [answer](RunControls& run, const auto&) {
                run.cancel(nullptr);
                return answer;
            };
            const RunOutcome outcome = startBesideClients(probed, true, "true", "true", upgrade);
            EXPECT_EQ(outcome.shutdown, 0) << answer;
            EXPECT_EQ(probed.engine.callTexts("Quit"), std::vector<std::string>{"Quit(0)"});
            EXPECT_FALSE(probed.engine.findLog(L"variable=[PDX_UNINSTALL_BASTION]")) << "asked before a client's start";
            EXPECT_EQ(probed.engine.variables.text(L"PDX_UNINSTALL_BASTION"), L"1") << upgrade << answer;
            EXPECT_EQ(probed.ui.names().size(), 1u);
        }
}

TEST(Run, EndsWhenTheEngineRefusesAStep) {
    const std::tuple<const char*, const wchar_t*, DWORD> rows[] = {// the step, a repair's "1", the exit code
                                                                   {"Detect", L"0", 0x80004005},
                                                                   {"Detect", L"1", 0x80004005},
                                                                   {"Plan", L"0", 1},
                                                                   {"Apply", L"0", 1}};
    for (const auto& [operation, repair, exitCode] : rows) {
        SCOPED_TRACE(operation);
        ProbedRun probed;
        probed.ui.answer = UiScript::driveOn;
        probed.engine.answers.refused = operation;
        probed.engine.variables.set(L"PDX_REPAIR", std::wstring(repair));
        const RunOutcome outcome = probed.run();
        EXPECT_EQ(outcome.failure, "");
        EXPECT_EQ(outcome.exitCode, exitCode);
        EXPECT_EQ(probed.app().state().status.lastError, E_FAIL);
        const auto logged = probed.engine.findLog((toWide(operation) + L" failed: "));
        ASSERT_TRUE(logged);
        EXPECT_EQ(logged->level, BOOTSTRAPPER_LOG_LEVEL_ERROR);
    }
}

TEST(Run, ReportsThePackagesOwnStatus) {
    const struct {
        const wchar_t* status;
        HRESULT engineStatus;
        DWORD lastError;
        Outcome outcome;
    } rows[] = {
        {L"25000", static_cast<HRESULT>(0x80070643), 0xA7FF61A8, Outcome::failed},
        {L"1603", static_cast<HRESULT>(0x80070643), 0xA7FF0643, Outcome::failed},
        {L"0", static_cast<HRESULT>(0x80070643), 0x80070643, Outcome::failed},
        {L"nonsense", static_cast<HRESULT>(0x80070643), 0x80070643, Outcome::failed},
        // In a package that succeeds the later successes stand.
        {L"25000", S_OK, 0xA7FF61A8, Outcome::succeeded},
    };
    for (const auto& row : rows) {
        ProbedRun probed;
        probed.ui.answer = UiScript::driveOn;
        EngineScript script;
        script.actions = {std::wstring(L"PDX_SET_VARIABLE:PDX_MSI_STATUS=") + row.status};
        script.execute = row.engineStatus;
        const RunOutcome outcome = probed.run(script);
        EXPECT_EQ(outcome.failure, "");
        const InstallStatus status = probed.app().state().status;
        EXPECT_EQ(static_cast<DWORD>(status.lastError), row.lastError);
        EXPECT_EQ(outcomeOf(status.status), row.outcome);
        EXPECT_EQ(entered(outcome, "OnExecuteComplete"), true);
    }
}

}  // namespace
}  // namespace pdx
