// Whole runs in process: the decisions of a start, what is shown, and how the run ends.
#include <gtest/gtest.h>

#include <string>

#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"
#include "platform/Text.h"
#include "tests/core/ApplicationProbe.h"

namespace pdx {
namespace {

TEST(Run, QuitsForTheOlderClientOnlyIfItsProgramAndLinkAreRecordedAndThatIsWanted) {
    const struct {
        bool program, link;
        const wchar_t* wanted;
        bool quits;
    } rows[] = {
        {.program = true, .link = true, .wanted = L"1", .quits = true},
        {.program = false, .link = true, .wanted = L"1", .quits = false},
        {.program = true, .link = false, .wanted = L"1", .quits = false},
        {.program = true, .link = true, .wanted = L"", .quits = false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        RegistryKey machine = RegistryKey::localMachine(view32), classes = RegistryKey::classesRoot(view64);
        if (row.program) machine.setSubKeyValue(bastionKey, L"ClientPath", std::wstring(L"C:\\B\\b.exe"));
        if (row.link) classes.setSubKeyValue(L"gatelink\\shell\\open\\command", {}, std::wstring(L"g.exe"));
        ProbedRun probed;
        probed.ui.answer = UiScript::driveOn;
        probed.engine.variables.set(L"IGNORE_ALREADY_INSTALLED", std::wstring(row.wanted));
        const RunOutcome outcome = probed.run();
        EXPECT_EQ(outcome.failure, "");
        EXPECT_EQ(outcome.find("OnDetectBegin") == nullptr, row.quits);
        machine.deleteTree(bastionKey);
        classes.deleteTree(L"gatelink");
    }
}

TEST(Run, EndsWhenTheEngineRefusesAStep) {
    const struct {
        const char* operation;
        const wchar_t* repair;
        DWORD exitCode;
    } rows[] = {
        {.operation = "Detect", .repair = L"0", .exitCode = 0x80004005},
        {.operation = "Detect", .repair = L"1", .exitCode = 0x80004005},
        {.operation = "Plan", .repair = L"0", .exitCode = 1},
        {.operation = "Apply", .repair = L"0", .exitCode = 1},
    };
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

TEST(Run, KeepsThePackagesOwnStatus) {
    constexpr auto failed = static_cast<HRESULT>(0x80070643);
    const struct {
        const wchar_t* status;
        HRESULT execution;
        DWORD lastError;
        Outcome outcome;
    } rows[] = {
        {.status = L"25000", .execution = failed, .lastError = 0xA7FF61A8, .outcome = Outcome::failed},
        {.status = L"0", .execution = failed, .lastError = 0x80070643, .outcome = Outcome::failed},
        // A later success keeps the error and replaces the status.
        {.status = L"25000", .execution = S_OK, .lastError = 0xA7FF61A8, .outcome = Outcome::succeeded},
    };
    for (const auto& row : rows) {
        ProbedRun probed;
        probed.ui.answer = UiScript::driveOn;
        const RunOutcome outcome = probed.run(
            {.actions = {std::wstring(L"PDX_SET_VARIABLE:PDX_MSI_STATUS=") + row.status}, .execute = row.execution});
        EXPECT_EQ(outcome.failure, "");
        const InstallStatus status = probed.app().state().status;
        EXPECT_EQ(static_cast<DWORD>(status.lastError), row.lastError);
        EXPECT_EQ(outcomeOf(status.status), row.outcome);
        EXPECT_TRUE(outcome.find("OnExecuteComplete"));
    }
}

}  // namespace
}  // namespace pdx
