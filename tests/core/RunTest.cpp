// Whole runs in process: the decisions of a start, what the dialog is told, and how a run is told at its end.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <string>

#include "config/Settings.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"
#include "platform/Text.h"
#include "tests/core/ApplicationProbe.h"
#include "ui/dialog/BootstrapperDialog.h"

namespace pdx {
namespace {

void forgetProduct() {
    for (const auto view : {view32, view64}) RegistryKey::localMachine(view).deleteTree(L"Software\\Corvane Works");
}

/// The client counts as installed while this lives.
struct InstalledClient {
    InstalledClient() {
        RegistryKey::localMachine(view64).setSubKeyValue(productKey, L"InstallLocation", std::wstring(L"C:\\Games\\P"));
    }
    ~InstalledClient() { forgetProduct(); }
};

bool entered(const RunOutcome& outcome, const char* slot) { return outcome.find(slot) != nullptr; }

TEST(Run, EndsAtTheStartForTheOlderClientThatWasAskedForOnly) {
    const std::tuple<bool, bool, const wchar_t*, bool> rows[] = {
        {true, true, L"1", true}, {false, true, L"1", false}, {true, false, L"1", false}, {true, true, L"", false}};
    for (const auto& [clientPath, gatelink, ignore, quits] : rows) {
        RegistryKey machine = RegistryKey::localMachine(view32), classes = RegistryKey::classesRoot(view64);
        if (clientPath) machine.setSubKeyValue(olderClientKey, L"ClientPath", std::wstring(L"C:\\B\\b.exe"));
        if (gatelink) classes.setSubKeyValue(L"gatelink\\shell\\open\\command", {}, std::wstring(L"g.exe"));
        AnsweringDialog dialog(AnsweringDialog::driveOn);
        ProbedRun probed;
        probed.engine.variables.set(L"IGNORE_ALREADY_INSTALLED", std::wstring(ignore));
        const RunOutcome outcome = probed.run();
        EXPECT_EQ(outcome.failure, "");
        EXPECT_EQ(entered(outcome, "OnDetectBegin"), !quits) << clientPath << gatelink;
        machine.deleteTree(olderClientKey);
        classes.deleteTree(L"gatelink");
    }
}

struct Sender {
    ProbedApplication& app;
    HANDLE begun;
};

unsigned __stdcall sendOnThread(void* argument) {
    auto& sender = *static_cast<Sender*>(argument);
    SetEvent(sender.begun);
    sender.app.sendAppMessage(WM_BA_CACHE_BEGIN);
    return 0;
}

TEST(Run, HoldsASecondMessageBackWhileAPromptWaits) {
    AnsweringDialog dialog;
    ProbedRun probed;
    ProbedApplication& app = probed.app();
    Handle begun(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    bool held = false;
    probed.run({}, [&](const SlotEvent& event) {
        if (event.slot != "OnDetectComplete" || event.returned) return;
        app.setDialogReady(false);
        Sender sender = {app, begun.get()};
        Thread other;
        other.start(sendOnThread, &sender);
        WaitForSingleObject(begun.get(), INFINITE);
        // No time tells how long a thread may be kept from running: a thousand later messages get through meanwhile.
        const HWND window = FindWindowExW(HWND_MESSAGE, nullptr, L"AnsweringDialog", nullptr);
        for (int time = 0; time < 1000; ++time) SendMessageW(window, WM_NULL, 0, 0);
        held = window && dialog.messages().empty();
        app.setDialogReady(true);
        other.join();
        app.quit(0);
    });
    EXPECT_TRUE(held);
    EXPECT_EQ(dialog.numbers(), std::vector<UINT>{WM_BA_CACHE_BEGIN});
}

TEST(Run, EndsItsDialogThoughAnotherLoopTakesTheFirstWord) {
    // As a dialog that is being moved.
    const auto moved = [](BootstrapperApplication& application) {
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
        application.setDialogWindow(reinterpret_cast<HWND>(1));
        application.setDialogReady(true);
        for (int loop = 0; loop < 2; ++loop)
            while (GetMessageW(&message, nullptr, 0, 0) > 0) continue;
    };
    ProbedRun probed(BOOTSTRAPPER_ACTION_INSTALL, BOOTSTRAPPER_DISPLAY_NONE, moved);
    EXPECT_EQ(probed.slots().OnStartup(), S_OK);
    EXPECT_EQ(probed.slots().OnShutdown(), 0);
}

TEST(Run, GoesOnWithoutADialogThatFailed) {
    const auto fails = [](BootstrapperApplication&) { throw std::runtime_error("no memory for a dialog"); };
    ProbedRun probed(BOOTSTRAPPER_ACTION_INSTALL, BOOTSTRAPPER_DISPLAY_NONE, fails);
    EXPECT_EQ(probed.slots().OnStartup(), E_FAIL);
    EXPECT_TRUE(probed.engine.findLog(L"The UI thread failed: no memory for a dialog"));
    EXPECT_EQ(probed.slots().OnShutdown(), 0);
}

/// Fails at a line that is logged while the dialog is made.
struct FailingLogger : Logger {
    void write(int32_t level, const char* function, int32_t line, const char* message) override {
        if (std::string_view(message).starts_with("variable=[InstallFolder]")) throw std::bad_alloc();
        earlier->write(level, function, line, message);
    }
    std::shared_ptr<Logger> earlier = g_logger.get();
};

TEST(Run, EndsAtTheStartWithADialogThatIsNotComplete) {
    ProbedRun probed(BOOTSTRAPPER_ACTION_INSTALL, BOOTSTRAPPER_DISPLAY_FULL, UIThreadFunc);
    probed.app();
    g_logger.set(std::make_shared<FailingLogger>());
    EXPECT_EQ(probed.slots().OnStartup(), E_FAIL);
    EXPECT_TRUE(probed.engine.findLog(L"The dialog is not complete"));
    EXPECT_EQ(probed.slots().OnShutdown(), 0);
    g_logger.clear();
}

TEST(Run, PlansNothingAfterAPromptInsideADetection) {
    AnsweringDialog dialog(AnsweringDialog::driveOn);
    ProbedRun probed;
    EngineScript script;
    script.package = BOOTSTRAPPER_PACKAGE_STATE_PRESENT;
    const RunOutcome outcome = probed.run(script);
    EXPECT_EQ(outcome.failure, "");
    EXPECT_TRUE(entered(outcome, "OnDetectComplete"));
    EXPECT_FALSE(entered(outcome, "OnPlanBegin"));
    EXPECT_EQ(dialog.numbers(), std::vector<UINT>{WM_BA_PROMPT_ALREADY_INSTALLED});
}

/// The client is installed, and the older one too where it is there.
RunOutcome startBesideClients(ProbedRun& probed, bool olderThere, const char* migration, const char* prompt,
                              const wchar_t* upgrade) {
    const InstalledClient client;
    RegistryKey machine = RegistryKey::localMachine(view32);
    if (olderThere) machine.setSubKeyValue(olderClientKey, L"InstallSuccesfull", std::wstring(L"true"));
    probed.app();
    std::istringstream settings(std::string("[app.meridian]\nenableMigration = ") + migration +
                                "\npromptBastionUninstall = " + prompt + "\n");
    g_config.set(std::make_shared<ConfigMap>(LoadConfigStream(settings)));  // after the constructor's own
    probed.engine.variables.set(L"PDX_MERIDIAN_UPGRADE", std::wstring(upgrade));
    probed.engine.variables.set(L"PDX_UNINSTALL_BASTION", std::wstring(L"1"));
    probed.engine.clearLog();
    const RunOutcome outcome = probed.run();
    machine.deleteTree(olderClientKey);
    return outcome;
}

TEST(Run, OffersTheMoveOnlyWhereAllOfItIsWanted) {
    const std::tuple<bool, const char*, const char*, const wchar_t*, UINT> rows[] = {
        {true, "true", "true", L"1", WM_BA_PROMPT_BASTION_UNINSTALL},
        {false, "true", "true", L"1", WM_BA_PROMPT_ALREADY_INSTALLED},
        {true, "false", "true", L"1", WM_BA_PROMPT_ALREADY_INSTALLED},
        {true, "true", "false", L"1", WM_BA_PROMPT_ALREADY_INSTALLED},
        {true, "true", "true", L"", WM_BA_PROMPT_ALREADY_INSTALLED},
    };
    for (const auto& [olderThere, migration, prompt, upgrade, offered] : rows) {
        AnsweringDialog dialog;
        ProbedRun probed;
        startBesideClients(probed, olderThere, migration, prompt, upgrade);
        EXPECT_EQ(dialog.numbers(), std::vector<UINT>{offered}) << olderThere << migration << prompt;
    }
}

TEST(Run, FollowsNoAnswerOfACancelledPrompt) {
    for (const wchar_t* upgrade : {L"", L"1"})
        for (const int answer : {0, 1, 2}) {
            AnsweringDialog dialog([answer](auto& application, const auto&) {
                application.PromptCancel(nullptr, TRUE, nullptr, nullptr);
                return answer;
            });
            ProbedRun probed;
            const RunOutcome outcome = startBesideClients(probed, true, "true", "true", upgrade);
            EXPECT_EQ(outcome.shutdown, 0) << answer;
            EXPECT_EQ(probed.engine.callTexts("Quit"), std::vector<std::string>{"Quit(0)"});
            EXPECT_FALSE(probed.engine.findLog(L"variable=[PDX_UNINSTALL_BASTION]")) << "asked before a client's start";
            EXPECT_EQ(probed.engine.variables.text(L"PDX_UNINSTALL_BASTION"), L"1") << upgrade << answer;
            EXPECT_EQ(dialog.messages().size(), 1u);
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
        ProbedRun probed(BOOTSTRAPPER_ACTION_INSTALL, BOOTSTRAPPER_DISPLAY_NONE, UIThreadFunc);
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
        AnsweringDialog dialog(AnsweringDialog::driveOn);
        ProbedRun probed;
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
