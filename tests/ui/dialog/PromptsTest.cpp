// Prompts over pages and over each other, and the ways in which a window closes.
#include <sstream>

#include "config/Settings.h"
#include "platform/Registry.h"
#include "platform/RegistryPaths.h"
#include "tests/ui/dialog/DialogBench.h"

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
    DialogBench bench;
    bench.dialog->ReplacePage({.kind = pageWelcome});
    EXPECT_TRUE(bench.app().isDialogReady());
    bench.later([&] {
        EXPECT_EQ(bench.text(), readable(offlineTitle));
        bench.later([&] {
            EXPECT_EQ(bench.text(), readable(installedTitle));
            // Goes below both prompts.
            bench.dialog->ReplacePage({.kind = pageOptions});
            EXPECT_EQ(bench.page(), pagePrompt);
            EXPECT_EQ(bench.text(), readable(installedTitle));
            bench.press(IDC_ACTION2);
        });
        // A sender that had passed the wait before the first prompt opened.
        EXPECT_EQ(SendMessageW(bench.window(), WM_BA_PROMPT_ALREADY_INSTALLED, 0, 0), 2);
        EXPECT_FALSE(bench.app().isDialogReady()) << "the outer prompt is still open";
        bench.later([&] {
            EXPECT_EQ(bench.text(), readable(offlineTitle)) << "comes to light again";
            EXPECT_EQ(bench.page(), pagePrompt);
            bench.press(IDC_ACTION1);
        });
    });
    EXPECT_EQ(bench.send(WM_BA_CACHE_ACQUIRE_COMPLETE, failed), IDRETRY);
    EXPECT_TRUE(bench.app().isDialogReady());
    EXPECT_EQ(bench.page(), pagePrompt);
    bench.settle();
    EXPECT_EQ(bench.page(), pageOptions) << "what was put below both prompts";
}

TEST(Prompts, GiveNoAnswerWhenTheirLoopOrWindowEnds) {
    const std::tuple<const char*, std::function<void(DialogBench&)>, bool, int> rows[] = {
        {"the thread is told to end", [](DialogBench&) { PostQuitMessage(7); }, true, 7},
        {"the window goes", [](DialogBench& bench) { DestroyWindow(bench.window()); }, false, 0},
        {"the cross, twice",
         [](DialogBench& bench) {
             bench.pressLater(IDC_CLOSE);
             bench.press(IDC_CLOSE);
         },
         false, 0},
    };
    for (const auto& [what, end, windowStands, code] : rows) {
        SCOPED_TRACE(what);
        DialogBench bench;
        bench.dialog->ReplacePage({.kind = pageWelcome});
        int inner = -1;
        bench.later([&] {
            bench.later([&] { end(bench); });
            inner = static_cast<int>(SendMessageW(bench.window(), WM_BA_PROMPT_ALREADY_INSTALLED, 0, 0));
        });
        EXPECT_EQ(bench.send(WM_BA_PROMPT_ALREADY_INSTALLED), 0);
        EXPECT_EQ(inner, 0);
        EXPECT_EQ(IsWindow(bench.window()) != FALSE, windowStands);
        bench.settle();
        EXPECT_EQ(bench.quitCode, code) << "the outermost loop sees the end too";
        EXPECT_EQ(bench.newCalls(), windowStands ? Texts{} : Texts{"Quit(0)"});
        bench.app().setDialogReady(false);
        bench.dialog.reset();
        EXPECT_TRUE(bench.app().isDialogReady()) << "nobody waits for a dialog that is gone";
    }
}

TEST(Prompts, KeepWhatTheBoxSaidWhenTheWindowGoes) {
    for (const bool ticked : {true, false}) {
        DialogBench bench;
        ErrorInfo error = {1, 1603, MB_OK, IDOK};
        bench.later([&] {
            if (!ticked) SendMessageW(bench.item(IDC_QUESTION), BM_SETCHECK, BST_UNCHECKED, 0);
            DestroyWindow(bench.window());
        });
        EXPECT_EQ(bench.send(WM_BA_ERROR, reinterpret_cast<WPARAM>(&error)), 0);
        EXPECT_EQ(bench.engine.variables.text(L"PDX_SUBMIT_ERROR_REPORT"), ticked ? L"1" : L"0");
    }
}

TEST(Prompts, GiveThePageBelowItsTitleAndProgressBack) {
    DialogBench bench;
    bench.send(WM_BA_EXECUTE_PACKAGE_BEGIN, TRUE);
    bench.send(WM_BA_UNINSTALLING_BASTION_TITLE);
    EXPECT_EQ(bench.text(), readable(removingTitle));
    bench.later([&] {
        EXPECT_EQ(bench.text(), readable(closeTitle));
        // Of a thread that had passed the wait before the prompt opened.
        SendMessageW(bench.window(), WM_BA_EXECUTE_PROGRESS, 0, 40);
        bench.press(IDC_ACTION1);
    });
    bench.press(IDC_CLOSE);
    bench.settle();
    EXPECT_EQ(bench.text(), readable(removingTitle)) << "behind the close prompt";
    EXPECT_FALSE(bench.dialog->progressBar->IsMarquee()) << "the percentage stands";
}

TEST(Closing, GoesByThePageOnTop) {
    constexpr auto install = BOOTSTRAPPER_ACTION_INSTALL, uninstall = BOOTSTRAPPER_ACTION_UNINSTALL;
    constexpr auto full = BOOTSTRAPPER_DISPLAY_FULL, passive = BOOTSTRAPPER_DISPLAY_PASSIVE;
    ErrorInfo choice = {1, 1603, MB_RETRYCANCEL, IDCANCEL};
    const auto error = [&](DialogBench& b) { return b.send(WM_BA_ERROR, reinterpret_cast<WPARAM>(&choice)); };
    const auto offline = [](DialogBench& b) { return b.send(WM_BA_CACHE_ACQUIRE_COMPLETE, failed); };
    const auto installed = [](DialogBench& b) {
        return static_cast<int>(SendMessageW(b.window(), WM_BA_PROMPT_ALREADY_INSTALLED, 0, 0));
    };
    using Act = std::function<void(DialogBench&)>;
    const struct {
        const char* what;
        BOOTSTRAPPER_ACTION action;
        BOOTSTRAPPER_DISPLAY display;
        Act act;
        bool stands = true;
        bool visible = true;
    } rows[] = {
        {"Escape asks, and then says no", install, full,
         [&](DialogBench& b) {
             b.later([&] {
                 EXPECT_EQ(b.text(), readable(closeTitle));
                 b.dismiss();
             });
             b.dismiss();
         }},
        {"Escape presses the one button", install, full,
         [&](DialogBench& b) {
             b.later([&] { b.dismiss(); });
             EXPECT_EQ(offline(b), IDRETRY);
         }},
        {"Escape answers no prompt over the close prompt", install, full,
         [&](DialogBench& b) {
             b.later([&] {
                 b.later([&] {
                     b.dismiss();
                     b.pressLater(IDC_ACTION2);
                 });
                 EXPECT_EQ(installed(b), 2);
                 b.dismiss();
             });
             b.dismiss();
         }},
        {"Escape cancels no uninstall", uninstall, full,
         [&](DialogBench& b) {
             b.dismiss();
             b.later([&] {
                 b.dismiss();
                 b.press(IDC_ACTION1);
             });
             EXPECT_EQ(error(b), IDRETRY);
         }},
        {"the cross does, without a question", uninstall, full, [](DialogBench& b) { b.press(IDC_CLOSE); }, false},
        {"Escape where nobody is asked", install, passive, [](DialogBench& b) { b.dismiss(); }},
        {"the cross where nobody is asked", install, passive, [](DialogBench& b) { b.press(IDC_CLOSE); }, false},
        {"the cross while the report goes out", install, full,
         [](DialogBench& b) {
             b.send(WM_BA_SENDING_ERROR_REPORT);
             b.press(IDC_CLOSE);
         },
         true, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        DialogBench bench(row.action, row.display);
        bench.send(WM_BA_EXECUTE_PACKAGE_BEGIN, TRUE);
        row.act(bench);
        const bool stands = IsWindow(bench.window());
        EXPECT_EQ(stands, row.stands);
        EXPECT_EQ(bench.app().cancelCheck(), row.stands ? 0 : IDCANCEL);
        EXPECT_EQ(bench.app().state().status.status, row.stands ? S_OK : hresultFromWin32(userExitCode));
        if (!stands) {
            EXPECT_EQ(bench.newCalls(), Texts{"Quit(0)"});
            continue;
        }
        EXPECT_EQ(IsWindowVisible(bench.window()) != FALSE, row.visible);
        bench.settle();
        EXPECT_EQ(bench.page(), pageProgress) << "goes on";
    }
}

TEST(Clicks, OnTheCrossOfTheOfferEndTheRunBeforeItIsPlanned) {
    RegistryKey::localMachine(view32).setSubKeyValue(olderClientKey, L"InstallSuccesfull", std::wstring(L"1"));
    DialogBench bench;
    std::istringstream settings("[app]\nmeridian.enableMigration = true\nmeridian.promptBastionUninstall = true\n");
    g_config.set(std::make_shared<ConfigMap>(LoadConfigStream(settings)));
    bench.dialog->ReplacePage({.kind = pageWelcome});
    for (const int32_t button : {IDC_CLOSE, IDC_ACTION2}) bench.pressLater(button);
    bench.press(IDC_ACTION1);
    EXPECT_FALSE(IsWindow(bench.window()));
    EXPECT_EQ(bench.engine.variables.text(L"PDX_UNINSTALL_BASTION"), L"0");
    EXPECT_TRUE(bench.engine.calls("Plan").empty());
    RegDeleteTreeW(RegistryKey::localMachine(view32).createSubKey(L"Software", true).get(), L"Bastion");
}

}  // namespace
}  // namespace pdx
