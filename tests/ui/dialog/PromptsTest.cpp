// Prompts over pages and over each other, the ways in which a window closes, and the start of an installation.
#include <algorithm>
#include <sstream>

#include "config/ConfigMap.h"
#include "platform/Registry.h"
#include "platform/RegistryPaths.h"
#include "tests/ui/dialog/Callback.h"
#include "tests/ui/dialog/DialogBench.h"

namespace pdx {
namespace {

using namespace testing_support;
using Calls = std::vector<std::string>;

constexpr auto installedTitle = L"installer_already_installed_title";
constexpr auto closeTitle = L"INSTALLER_CLOSE_TITLE";

TEST(Prompts, StackAndHoldEachOtherCallbackBack) {
    DialogBench bench;
    bench.dialog->ReplacePage({.kind = pageWelcome});
    std::unique_ptr<Callback> third;
    int inner = -1;
    bench.later([&] {
        EXPECT_EQ(bench.text(), readable(L"INSTALLER_ERROR_CONNECTION_TITLE"));
        bench.later([&] {
            EXPECT_EQ(bench.text(), readable(installedTitle));
            third = std::make_unique<Callback>(*bench.application, WM_BA_CACHE_ACQUIRE_BEGIN);
            // Goes below both prompts.
            bench.dialog->ReplacePage({.kind = pageOptions});
            EXPECT_EQ(bench.page(), pagePrompt);
            EXPECT_EQ(bench.text(), readable(installedTitle));
            EXPECT_TRUE(third->isHeld());
            bench.press(IDC_ACTION2);
        });
        // A sender that had passed the wait before the first prompt opened.
        inner = static_cast<int>(SendMessageW(bench.window(), WM_BA_PROMPT_ALREADY_INSTALLED, 0, 0));
        EXPECT_EQ(inner, 2);
        EXPECT_TRUE(third->isHeld()) << "the outer prompt is still open";
        bench.later([&] {
            EXPECT_EQ(bench.text(), readable(L"INSTALLER_ERROR_CONNECTION_TITLE")) << "comes to light again";
            EXPECT_EQ(bench.page(), pagePrompt);
            bench.press(IDC_ACTION1);
        });
    });
    EXPECT_EQ(bench.send(WM_BA_CACHE_ACQUIRE_COMPLETE, static_cast<WPARAM>(E_FAIL)), IDRETRY);
    bench.settleUntil(third->answered.get());
    EXPECT_EQ(third->answer, 0);
    EXPECT_EQ(bench.page(), pageOptions) << "what was put below both prompts";
}

TEST(Prompts, GiveNoAnswerWhenTheirLoopOrWindowEnds) {
    const struct {
        const char* what;
        std::function<void(DialogBench&)> end;
        bool windowStands;
        int code;
    } rows[] = {
        {"the thread is told to end", [](DialogBench&) { PostQuitMessage(7); }, true, 7},
        {"the window goes", [](DialogBench& bench) { DestroyWindow(bench.window()); }, false, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        DialogBench bench;
        bench.dialog->ReplacePage({.kind = pageWelcome});
        int inner = -1;
        bench.later([&] {
            bench.later([&] { row.end(bench); });
            inner = static_cast<int>(SendMessageW(bench.window(), WM_BA_PROMPT_ALREADY_INSTALLED, 0, 0));
        });
        EXPECT_EQ(bench.send(WM_BA_PROMPT_ALREADY_INSTALLED), 0);
        EXPECT_EQ(inner, 0);
        EXPECT_EQ(IsWindow(bench.window()) != FALSE, row.windowStands);
        bench.settle();
        EXPECT_EQ(bench.quitCode, row.code) << "the outermost loop sees the end too";
        EXPECT_EQ(bench.newCalls(), row.windowStands ? Calls{} : Calls{"Quit(0)"});
        if (!row.windowStands) {
            EXPECT_EQ(bench.send(WM_BA_CACHE_BEGIN), 0);
        }
    }
}

TEST(Prompts, AskAboutTheErrorReport) {
    ErrorInfo error = {1, 1601, 0, IDOK};
    DialogBench bench;
    for (const bool ticked : {false, true}) {
        bench.later([&] {
            EXPECT_EQ(bench.text(), readable(L"INSTALLER_ERROR_DISK_SPACE_TITLE"));
            EXPECT_TRUE(bench.shows(IDC_QUESTION) && bench.shows(IDC_PICTURE) && !bench.shows(IDC_ACTION2));
            EXPECT_EQ(SendMessageW(bench.item(IDC_QUESTION), BM_GETCHECK, 0, 0), BST_CHECKED) << "each time anew";
            if (!ticked) SendMessageW(bench.item(IDC_QUESTION), BM_CLICK, 0, 0);
            bench.press(IDC_ACTION1);
        });
        EXPECT_EQ(bench.send(WM_BA_ERROR, reinterpret_cast<WPARAM>(&error)), IDOK);
        EXPECT_EQ(bench.newCalls().back(), ticked ? "SetVariableNumeric(PDX_SUBMIT_ERROR_REPORT, 1)"
                                                  : "SetVariableNumeric(PDX_SUBMIT_ERROR_REPORT, 0)");
    }
}

TEST(Closing, AsksFirstAndCancelsTheRun) {
    const struct {
        const char* what;
        int32_t press;  ///< in the prompt
        bool logout;
        bool ends;
    } rows[] = {{"goes on", IDC_ACTION1, false, false},
                {"cancels", IDC_ACTION2, false, true},
                {"closed twice", IDC_CLOSE, false, true},
                {"with the session", IDC_ACTION2, true, true}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        DialogBench bench;
        bench.dialog->ReplacePage({.kind = pageProgress, .title = L"under way"});
        if (row.logout) {
            EXPECT_TRUE(SendMessageW(bench.window(), WM_QUERYENDSESSION, 0, 0));
        }
        bench.later([&] {
            EXPECT_EQ(bench.text(), readable(closeTitle));
            bench.press(row.press);
        });
        // What Escape and the system's close command arrive as, too.
        SendMessageW(bench.window(), WM_COMMAND, MAKEWPARAM(row.logout ? IDCANCEL : IDC_CLOSE, BN_CLICKED), 0);
        bench.settle();
        EXPECT_EQ(IsWindow(bench.window()) == FALSE, row.ends);
        EXPECT_EQ(bench.newCalls(), row.ends ? Calls{"Quit(0)"} : Calls{});
        EXPECT_EQ(bench.application->OnPlanBegin(1), row.ends ? IDCANCEL : 0) << "every callback is told";
        if (!row.ends) {
            EXPECT_EQ(bench.page(), pageProgress);
            continue;
        }
        bench.application->OnShutdown();
        EXPECT_TRUE(bench.engine.findLog(row.logout ? L"logout_exit" : L"user_action"));
    }
}

TEST(Closing, EndsAnUninstallationWithoutAQuestion) {
    DialogBench bench(BOOTSTRAPPER_ACTION_UNINSTALL);
    bench.pressLater(IDC_CLOSE);
    bench.send(WM_BA_DETECT_COMPLETE);
    EXPECT_FALSE(IsWindow(bench.window()));
    EXPECT_EQ(bench.newCalls(), Calls{"Quit(0)"}) << "and plans nothing";
}

TEST(Uninstalling, WaitsForTheClientToEnd) {
    for (const bool ends : {false, true}) {
        DialogBench bench(BOOTSTRAPPER_ACTION_UNINSTALL);
        Handle client(CreateMutexW(nullptr, FALSE, L"Global\\PalisadeDesktop.exe"));
        bench.later([&] {
            EXPECT_EQ(bench.text(), readable(L"INSTALLER_UNINSTALL_CLIENT_RUNNING_TITLE"));
            bench.press(IDC_ACTION1);  // too early
            bench.later([&] {
                if (ends) client.reset();
                bench.press(ends ? IDC_ACTION1 : IDC_ACTION2);
                if (ends) bench.pressLater(IDC_ACTION1);
            });
        });
        bench.send(WM_BA_DETECT_COMPLETE);
        EXPECT_EQ(bench.newCalls(), ends ? Calls{"Plan(3)"} : Calls{"Quit(0)"});
        EXPECT_EQ(bench.engine.findLog(L"Palisade Desktop is still running.  Canceling uninstall").has_value(), !ends);
    }
}

TEST(Installing, StartsFromEitherPageWithWhatTheUserChose) {
    DialogBench bench;
    bench.dialog->ReplacePage({.kind = pageWelcome});
    bench.press(IDC_OPTIONS);
    EXPECT_EQ(bench.page(), pageOptions);
    bench.press(IDC_ACTION2);
    EXPECT_EQ(bench.page(), pageWelcome);
    bench.press(IDC_OPTIONS);
    SetWindowTextW(bench.item(IDC_LOCATION_VALUE), L"relative\\path");
    bench.later([&] {
        EXPECT_EQ(bench.text(IDC_BODY), readable(L"INSTALLER_ERROR_RELATIVE_PATH"));
        bench.press(IDC_ACTION1);
    });
    bench.press(IDC_ACTION1);
    bench.settle();
    EXPECT_EQ(bench.page(), pageOptions);
    EXPECT_EQ(bench.newCalls(), Calls{}) << "no variable is set";

    const Calls sets = {"SetVariableString(InstallFolder, C:\\Elsewhere)", "SetVariableString(CreateDesktopShortcut, )",
                        "Plan(5)"};
    SetWindowTextW(bench.item(IDC_LOCATION_VALUE), L"C:\\Elsewhere");
    SendMessageW(bench.item(IDC_SHORTCUT), BM_CLICK, 0, 0);
    bench.press(IDC_ACTION1);
    EXPECT_EQ(bench.newCalls(), sets);
    EXPECT_EQ(bench.page(), pageProgress);
}

TEST(Installing, OffersToTakeTheOlderClientAway) {
    RegistryKey::localMachine(view32).setSubKeyValue(olderClientKey, L"InstallSuccesfull", std::wstring(L"1"));
    const struct {
        std::vector<int32_t> presses;
        const char* answer;
        bool plans;
    } rows[] = {{{IDC_ACTION1}, "SetVariableNumeric(PDX_UNINSTALL_BASTION, 1)", true},
                {{IDC_ACTION2}, "SetVariableNumeric(PDX_UNINSTALL_BASTION, 0)", true},
                {{IDC_CLOSE, IDC_ACTION1, IDC_ACTION1}, "SetVariableNumeric(PDX_UNINSTALL_BASTION, 1)", true},
                {{IDC_CLOSE, IDC_ACTION2}, "SetVariableNumeric(PDX_UNINSTALL_BASTION, 0)", false}};
    for (const auto& row : rows) {
        DialogBench bench;
        std::istringstream settings("[app.meridian]\nenableMigration = true\npromptBastionUninstall = true\n");
        g_config.set(std::make_shared<ConfigMap>(LoadConfigStream(settings)));
        bench.dialog->ReplacePage({.kind = pageWelcome});
        std::function<void(size_t)> pressFrom = [&](size_t index) {
            if (index == row.presses.size()) return;
            EXPECT_EQ(bench.page(), index == 1 ? pagePrompt : pageOlderClient);
            // Behind the refresh that the end of a prompt posts.
            bench.later([&, index] { bench.later([&, index] { pressFrom(index + 1); }); });
            bench.press(row.presses[index]);
        };
        bench.later([&] { pressFrom(0); });
        bench.press(IDC_ACTION1);
        bench.settle();
        const Calls calls = bench.newCalls();
        EXPECT_EQ(std::count(calls.begin(), calls.end(), row.answer), 1);
        EXPECT_EQ(calls.back() == "Plan(5)", row.plans);
        EXPECT_EQ(IsWindow(bench.window()) != FALSE, row.plans);
    }
    RegDeleteTreeW(RegistryKey::localMachine(view32).createSubKey(L"Software", true).get(), L"Bastion");
}

}  // namespace
}  // namespace pdx
