// Prompts over pages and over each other, and the ways in which a window closes.
#include <sstream>

#include "config/Settings.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"
#include "tests/ui/dialog/ProbedDialog.h"

namespace pdx {
namespace {

using namespace testing_support;
using Texts = std::vector<std::string>;

constexpr auto installedTitle = L"installer_already_installed_title";
constexpr auto offlineTitle = L"INSTALLER_ERROR_CONNECTION_TITLE";
constexpr auto closeTitle = L"INSTALLER_CLOSE_TITLE";
constexpr auto removingTitle = L"INSTALLER_MODAL_UNINSTALLING_BASTION_TITLE";
constexpr auto offerTitle = L"INSTALLER_DIALOG_UNINSTALL_BASTION_CONFIRMATION_TITLE";
constexpr auto failed = static_cast<WPARAM>(E_FAIL);

TEST(Prompts, EachPromptAnswersItsOwnMessage) {
    ProbedDialog probed;
    probed.dialog->ReplacePage({.kind = pageWelcome});
    EXPECT_TRUE(probed.gate().isReady());
    const auto opensAnother = [&] {
        EXPECT_EQ(probed.sendPastTheGate(WM_BA_PROMPT_ALREADY_INSTALLED), 2);
        EXPECT_FALSE(probed.gate().isReady()) << "the outer prompt is still open";
    };
    const auto replacesThePage = [&] {
        probed.dialog->ReplacePage({.kind = pageOptions});
        EXPECT_EQ(probed.page(), pagePrompt);
        EXPECT_EQ(probed.text(), readable(installedTitle));
    };
    probed.user({{.sees = offlineTitle, .meanwhile = opensAnother},
                 {.sees = installedTitle, .presses = IDC_ACTION2, .meanwhile = replacesThePage},
                 {.sees = offlineTitle, .presses = IDC_ACTION1}});
    EXPECT_EQ(probed.send(WM_BA_CACHE_ACQUIRE_COMPLETE, failed), IDRETRY);
    EXPECT_TRUE(probed.gate().isReady());
    EXPECT_EQ(probed.page(), pagePrompt);
    probed.settle();
    EXPECT_EQ(probed.page(), pageOptions) << "set below both prompts";
}

TEST(Prompts, AnEndedLoopOrWindowGivesNoAnswer) {
    const auto crossTwice = [](ProbedDialog& probed) {
        probed.user({{closeTitle, IDC_CLOSE}});
        probed.press(IDC_CLOSE);
    };
    const struct {
        const char* what;
        std::function<void(ProbedDialog&)> ends;
        bool windowLeft;
        int code;
    } rows[] = {
        {"the thread", [](ProbedDialog&) { PostQuitMessage(7); }, true, 7},
        {"the window", [](ProbedDialog& probed) { DestroyWindow(probed.window()); }, false, 0},
        {"the cross, twice", crossTwice, false, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        ProbedDialog probed;
        probed.dialog->ReplacePage({.kind = pageWelcome});
        const auto opensAnother = [&] { EXPECT_EQ(probed.sendPastTheGate(WM_BA_PROMPT_ALREADY_INSTALLED), 0); };
        probed.user({{.sees = installedTitle, .meanwhile = opensAnother},
                     {.sees = installedTitle, .meanwhile = [&] { row.ends(probed); }}});
        EXPECT_EQ(probed.send(WM_BA_PROMPT_ALREADY_INSTALLED), 0);
        EXPECT_EQ(IsWindow(probed.window()) != FALSE, row.windowLeft);
        probed.settle();
        EXPECT_EQ(probed.quitCode, row.code) << "posted again for the outermost loop";
        EXPECT_EQ(probed.newCalls(), row.windowLeft ? Texts{} : Texts{"Quit(0)"});
        probed.gate().setReady(false);
        probed.dialog.reset();
        EXPECT_TRUE(probed.gate().isReady()) << "nobody waits for a dialog that has ended";
    }
}

TEST(Prompts, APromptThatCannotBeShownBlocksNobody) {
    ProbedDialog probed;
    probed.dialog->ReplacePage({.kind = pageWelcome});
    probed.dialog->failsOnce = true;
    EXPECT_EQ(probed.send(WM_BA_PROMPT_ALREADY_INSTALLED), 0);
    ASSERT_TRUE(probed.gate().isReady());
    probed.settle();
    EXPECT_EQ(probed.page(), pageWelcome);

    probed.dialog->failsOnce = true;
    probed.press(IDC_CLOSE);
    probed.user({{closeTitle, IDC_ACTION1}});
    probed.press(IDC_CLOSE);
    EXPECT_TRUE(IsWindow(probed.window()));

    constexpr LPARAM restart = 1;
    probed.dialog->failsOnce = true;
    probed.send(WM_BA_APPLY_COMPLETE, 0, restart);
    EXPECT_EQ(probed.newCalls(), Texts{"Quit(1)"}) << "no other step ends the run";
    EXPECT_EQ(probed.app().installStatus(), E_FAIL);
}

TEST(Prompts, AClosedWindowKeepsTheStateOfTheReportBox) {
    for (const bool ticked : {true, false}) {
        ProbedDialog probed;
        ErrorInfo error = {1, 1603, MB_OK, IDOK};
        const auto closes = [&] {
            if (!ticked) SendMessageW(probed.item(IDC_QUESTION), BM_SETCHECK, BST_UNCHECKED, 0);
            DestroyWindow(probed.window());
        };
        probed.user({{.sees = L"INSTALLER_ERROR_UNKNOWN_TITLE", .meanwhile = closes}});
        EXPECT_EQ(probed.send(WM_BA_ERROR, reinterpret_cast<WPARAM>(&error)), 0);
        EXPECT_EQ(probed.engine.variables.text(L"PDX_SUBMIT_ERROR_REPORT"), ticked ? L"1" : L"0");
    }
}

TEST(Prompts, ThePageBelowKeepsItsTitleAndProgress) {
    ProbedDialog probed;
    probed.send(WM_BA_EXECUTE_PACKAGE_BEGIN, TRUE);
    probed.send(WM_BA_UNINSTALLING_BASTION_TITLE);
    EXPECT_EQ(probed.text(), readable(removingTitle));
    const auto progresses = [&] { probed.sendPastTheGate(WM_BA_EXECUTE_PROGRESS, 0, 40); };
    probed.user({{.sees = closeTitle, .presses = IDC_ACTION1, .meanwhile = progresses}});
    probed.press(IDC_CLOSE);
    probed.settle();
    EXPECT_EQ(probed.text(), readable(removingTitle));
    EXPECT_FALSE(probed.dialog->progressBar->isMarquee());
}

TEST(Closing, EscapePressesTheOnlyButtonOfThePromptOnTop) {
    ProbedDialog probed;
    probed.send(WM_BA_EXECUTE_PACKAGE_BEGIN, TRUE);
    const auto opensOthers = [&] {
        EXPECT_EQ(probed.sendPastTheGate(WM_BA_CACHE_ACQUIRE_COMPLETE, failed), IDRETRY);
        EXPECT_EQ(probed.sendPastTheGate(WM_BA_PROMPT_ALREADY_INSTALLED), 2);
    };
    probed.user({{.sees = closeTitle, .presses = escape, .meanwhile = opensOthers},
                 {.sees = offlineTitle, .presses = escape},
                 {.sees = installedTitle, .presses = escape},  // has two
                 {.sees = installedTitle, .presses = IDC_ACTION2}});
    probed.press(escape);
    EXPECT_EQ(probed.app().cancelCheck(), 0) << "the close prompt's first button continues";
    EXPECT_TRUE(IsWindowVisible(probed.window()));
    probed.settle();
    EXPECT_EQ(probed.page(), pageProgress);
}

TEST(Closing, TheCrossCancelsAnUninstallAndEscapeDoesNot) {
    ProbedDialog probed(BOOTSTRAPPER_ACTION_UNINSTALL);
    probed.send(WM_BA_EXECUTE_PACKAGE_BEGIN, TRUE);
    probed.press(escape);
    EXPECT_EQ(probed.app().cancelCheck(), 0);
    probed.press(IDC_CLOSE);
    EXPECT_EQ(probed.app().cancelCheck(), IDCANCEL);
    EXPECT_EQ(probed.app().state().status.status, hresultFromWin32(userExitCode));
    EXPECT_FALSE(IsWindow(probed.window()));
    EXPECT_EQ(probed.newCalls(), Texts{"Quit(0)"});
}

TEST(Offer, ItsAnswerIsSetBeforeTheInstallIsPlanned) {
    const std::string overlay = "meridian_uninstall_overlay_";
    const Turn uninstall = {offerTitle, IDC_ACTION1}, notNow = {offerTitle, IDC_ACTION2};
    const Turn cross = {offerTitle, IDC_CLOSE}, goOn = {closeTitle, IDC_ACTION1}, cancel = {closeTitle, IDC_ACTION2};
    const struct {
        std::vector<Turn> user;
        const wchar_t* removes;
        Texts reports;
        bool plans;
    } rows[] = {
        {{uninstall}, L"1", {overlay + "uninstall_bastion click"}, true},
        {{notNow}, L"0", {overlay + "not_now click"}, true},
        {{cross, goOn, notNow}, L"0", {overlay + "close click", overlay + "not_now click"}, true},
        {{cross, cancel}, L"0", {overlay + "close click"}, false},
    };
    RegistryKey machine = RegistryKey::localMachine(view32);
    machine.setSubKeyValue(bastionKey, L"InstallSuccesfull", std::wstring(L"1"));
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        ProbedDialog probed;
        std::istringstream settings("[app.meridian]\nenableMigration = true\npromptBastionUninstall = true\n");
        g_config.set(std::make_shared<ConfigMap>(LoadConfigStream(settings)));
        probed.dialog->ReplacePage({.kind = pageWelcome});
        std::vector<Turn> user = row.user;
        user[0].meanwhile = [&] {
            EXPECT_EQ(probed.page(), pageBastion);
            EXPECT_EQ(probed.engine.callTexts("Plan"), Texts{});
            probed.newlyReported();
        };
        probed.user(std::move(user));
        probed.press(IDC_ACTION1);
        EXPECT_EQ(probed.engine.variables.text(L"PDX_UNINSTALL_BASTION"), row.removes);
        EXPECT_EQ(probed.engine.callTexts("Plan"), row.plans ? Texts{"Plan(5)"} : Texts{});
        EXPECT_EQ(IsWindow(probed.window()) != FALSE, row.plans);
        EXPECT_EQ(probed.newlyReported(), row.reports);
    }
    machine.deleteTree(bastionKey);
}

}  // namespace
}  // namespace pdx
