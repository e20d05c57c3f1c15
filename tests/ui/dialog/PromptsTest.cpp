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
constexpr auto failed = static_cast<WPARAM>(E_FAIL);

TEST(Prompts, StackAndHoldEachOtherCallbackBack) {
    ProbedDialog probed;
    probed.dialog->ReplacePage({.kind = pageWelcome});
    EXPECT_TRUE(probed.gate().isReady());
    probed.later([&] {
        EXPECT_EQ(probed.text(), readable(offlineTitle));
        probed.later([&] {
            EXPECT_EQ(probed.text(), readable(installedTitle));
            // Goes below both prompts.
            probed.dialog->ReplacePage({.kind = pageOptions});
            EXPECT_EQ(probed.page(), pagePrompt);
            EXPECT_EQ(probed.text(), readable(installedTitle));
            probed.press(IDC_ACTION2);
        });
        // A sender that had passed the wait before the first prompt opened.
        EXPECT_EQ(SendMessageW(probed.window(), WM_BA_PROMPT_ALREADY_INSTALLED, 0, 0), 2);
        EXPECT_FALSE(probed.gate().isReady()) << "the outer prompt is still open";
        probed.later([&] {
            EXPECT_EQ(probed.text(), readable(offlineTitle)) << "comes to light again";
            EXPECT_EQ(probed.page(), pagePrompt);
            probed.press(IDC_ACTION1);
        });
    });
    EXPECT_EQ(probed.send(WM_BA_CACHE_ACQUIRE_COMPLETE, failed), IDRETRY);
    EXPECT_TRUE(probed.gate().isReady());
    EXPECT_EQ(probed.page(), pagePrompt);
    probed.settle();
    EXPECT_EQ(probed.page(), pageOptions) << "what was put below both prompts";
}

TEST(Prompts, GiveNoAnswerWhenTheirLoopOrWindowEnds) {
    const std::tuple<const char*, std::function<void(ProbedDialog&)>, bool, int> rows[] = {
        {"the thread ends", [](ProbedDialog&) { PostQuitMessage(7); }, true, 7},
        {"the window goes", [](ProbedDialog& probed) { DestroyWindow(probed.window()); }, false, 0},
        {"the cross, twice",
         [](ProbedDialog& probed) {
             probed.pressLater(IDC_CLOSE);
             probed.press(IDC_CLOSE);
         },
         false, 0},
    };
    for (const auto& [what, end, windowStands, code] : rows) {
        SCOPED_TRACE(what);
        ProbedDialog probed;
        probed.dialog->ReplacePage({.kind = pageWelcome});
        int inner = -1;
        probed.later([&] {
            probed.later([&] { end(probed); });
            inner = static_cast<int>(SendMessageW(probed.window(), WM_BA_PROMPT_ALREADY_INSTALLED, 0, 0));
        });
        EXPECT_EQ(probed.send(WM_BA_PROMPT_ALREADY_INSTALLED), 0);
        EXPECT_EQ(inner, 0);
        EXPECT_EQ(IsWindow(probed.window()) != FALSE, windowStands);
        probed.settle();
        EXPECT_EQ(probed.quitCode, code) << "the outermost loop sees the end too";
        EXPECT_EQ(probed.newCalls(), windowStands ? Texts{} : Texts{"Quit(0)"});
        probed.gate().setReady(false);
        probed.dialog.reset();
        EXPECT_TRUE(probed.gate().isReady()) << "nobody waits for a dialog that is gone";
    }
}

TEST(Prompts, ThatCannotBeShownHoldNobodyBack) {
    ProbedDialog probed;
    probed.dialog->ReplacePage({.kind = pageWelcome});
    probed.dialog->failsOnce = true;
    EXPECT_EQ(probed.send(WM_BA_PROMPT_ALREADY_INSTALLED), 0);
    ASSERT_TRUE(probed.gate().isReady());
    probed.settle();
    EXPECT_EQ(probed.page(), pageWelcome);

    probed.dialog->failsOnce = true;
    probed.press(IDC_CLOSE);
    probed.later([&] {
        EXPECT_EQ(probed.text(), readable(closeTitle)) << "asks anew";
        probed.press(IDC_ACTION1);
    });
    probed.press(IDC_CLOSE);
    EXPECT_TRUE(IsWindow(probed.window()));

    constexpr LPARAM restart = 1;
    probed.dialog->failsOnce = true;
    probed.send(WM_BA_APPLY_COMPLETE, 0, restart);
    EXPECT_EQ(probed.newCalls(), Texts{"Quit(1)"}) << "the run goes on from here or not at all";
    EXPECT_EQ(probed.app().installStatus(), E_FAIL);
}

TEST(Prompts, KeepWhatTheBoxSaidWhenTheWindowGoes) {
    for (const bool ticked : {true, false}) {
        ProbedDialog probed;
        ErrorInfo error = {1, 1603, MB_OK, IDOK};
        probed.later([&] {
            if (!ticked) SendMessageW(probed.item(IDC_QUESTION), BM_SETCHECK, BST_UNCHECKED, 0);
            DestroyWindow(probed.window());
        });
        EXPECT_EQ(probed.send(WM_BA_ERROR, reinterpret_cast<WPARAM>(&error)), 0);
        EXPECT_EQ(probed.engine.variables.text(L"PDX_SUBMIT_ERROR_REPORT"), ticked ? L"1" : L"0");
    }
}

TEST(Prompts, GiveThePageBelowItsTitleAndProgressBack) {
    ProbedDialog probed;
    probed.send(WM_BA_EXECUTE_PACKAGE_BEGIN, TRUE);
    probed.send(WM_BA_UNINSTALLING_BASTION_TITLE);
    EXPECT_EQ(probed.text(), readable(removingTitle));
    probed.later([&] {
        EXPECT_EQ(probed.text(), readable(closeTitle));
        // Of a thread that had passed the wait before the prompt opened.
        SendMessageW(probed.window(), WM_BA_EXECUTE_PROGRESS, 0, 40);
        probed.press(IDC_ACTION1);
    });
    probed.press(IDC_CLOSE);
    probed.settle();
    EXPECT_EQ(probed.text(), readable(removingTitle)) << "after the close prompt";
    EXPECT_FALSE(probed.dialog->progressBar->isMarquee()) << "the percentage stands";
}

TEST(Closing, GoesByThePageOnTop) {
    const struct {
        const char* what;
        BOOTSTRAPPER_ACTION action;
        std::function<void(ProbedDialog&)> act;
        bool stands = true;
        bool visible = true;
    } rows[] = {
        {"Escape asks, presses the one button of a prompt over that, answers none with two, and then says no",
         BOOTSTRAPPER_ACTION_INSTALL,
         [](ProbedDialog& b) {
             b.later([&] {
                 EXPECT_EQ(b.text(), readable(closeTitle));
                 b.later([&] { b.dismiss(); });
                 EXPECT_EQ(SendMessageW(b.window(), WM_BA_CACHE_ACQUIRE_COMPLETE, failed, 0), IDRETRY);
                 b.later([&] {
                     b.dismiss();
                     b.pressLater(IDC_ACTION2);
                 });
                 EXPECT_EQ(SendMessageW(b.window(), WM_BA_PROMPT_ALREADY_INSTALLED, 0, 0), 2);
                 b.dismiss();
             });
             b.dismiss();
         }},
        {"Escape cancels no uninstall; the cross does, without a question", BOOTSTRAPPER_ACTION_UNINSTALL,
         [](ProbedDialog& b) {
             b.dismiss();
             b.press(IDC_CLOSE);
         },
         false},
        {"the cross while the report goes out", BOOTSTRAPPER_ACTION_INSTALL,
         [](ProbedDialog& b) {
             b.send(WM_BA_SENDING_ERROR_REPORT);
             b.press(IDC_CLOSE);
         },
         true, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        ProbedDialog probed(row.action);
        probed.send(WM_BA_EXECUTE_PACKAGE_BEGIN, TRUE);
        row.act(probed);
        const bool stands = IsWindow(probed.window());
        EXPECT_EQ(stands, row.stands);
        EXPECT_EQ(probed.app().cancelCheck(), row.stands ? 0 : IDCANCEL);
        EXPECT_EQ(probed.app().state().status.status, row.stands ? S_OK : hresultFromWin32(userExitCode));
        if (!stands) {
            EXPECT_EQ(probed.newCalls(), Texts{"Quit(0)"});
            continue;
        }
        EXPECT_EQ(IsWindowVisible(probed.window()) != FALSE, row.visible);
        probed.settle();
        EXPECT_EQ(probed.page(), pageProgress) << "goes on";
    }
}

TEST(Clicks, OnTheCrossOfTheOfferEndTheRunBeforeItIsPlanned) {
    RegistryKey::localMachine(view32).setSubKeyValue(bastionKey, L"InstallSuccesfull", std::wstring(L"1"));
    ProbedDialog probed;
    std::istringstream settings("[app]\nmeridian.enableMigration = true\nmeridian.promptBastionUninstall = true\n");
    g_config.set(std::make_shared<ConfigMap>(LoadConfigStream(settings)));
    probed.dialog->ReplacePage({.kind = pageWelcome});
    for (const int32_t button : {IDC_CLOSE, IDC_ACTION2}) probed.pressLater(button);
    probed.press(IDC_ACTION1);
    EXPECT_FALSE(IsWindow(probed.window()));
    EXPECT_EQ(probed.engine.variables.text(L"PDX_UNINSTALL_BASTION"), L"0");
    EXPECT_TRUE(probed.engine.calls("Plan").empty());
    RegDeleteTreeW(RegistryKey::localMachine(view32).createSubKey(L"Software", true).get(), L"Bastion");
}

}  // namespace
}  // namespace pdx
