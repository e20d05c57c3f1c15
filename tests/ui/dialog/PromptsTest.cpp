// Prompts over pages and over each other, and the ways in which a window closes.
#include "tests/ui/dialog/Callback.h"
#include "tests/ui/dialog/DialogBench.h"

namespace pdx {
namespace {

using namespace testing_support;
using Calls = std::vector<std::string>;

constexpr auto installedTitle = L"installer_already_installed_title";

TEST(Prompts, StackAndHoldEachOtherCallbackBack) {
    DialogBench bench;
    bench.dialog->ReplacePage({.kind = pageWelcome});
    std::unique_ptr<Callback> third;
    int inner = -1;
    bench.later([&] {
        EXPECT_EQ(bench.text(), readable(L"INSTALLER_ERROR_CONNECTION_TITLE"));
        bench.later([&] {
            EXPECT_EQ(bench.text(), readable(installedTitle));
            third = std::make_unique<Callback>(bench.app(), WM_BA_CACHE_ACQUIRE_BEGIN);
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
    const std::tuple<const char*, std::function<void(DialogBench&)>, bool, int> rows[] = {
        {"the thread is told to end", [](DialogBench&) { PostQuitMessage(7); }, true, 7},
        {"the window goes", [](DialogBench& bench) { DestroyWindow(bench.window()); }, false, 0},
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
        EXPECT_EQ(bench.newCalls(), windowStands ? Calls{} : Calls{"Quit(0)"});
        if (!windowStands) {
            EXPECT_EQ(bench.send(WM_BA_CACHE_BEGIN), 0);
        }
    }
}

TEST(Closing, EndsAnUninstallationWithoutAQuestion) {
    DialogBench bench(BOOTSTRAPPER_ACTION_UNINSTALL);
    bench.pressLater(IDC_CLOSE);
    bench.send(WM_BA_DETECT_COMPLETE);
    EXPECT_FALSE(IsWindow(bench.window()));
    EXPECT_EQ(bench.newCalls(), Calls{"Quit(0)"}) << "and plans nothing";
}

}  // namespace
}  // namespace pdx
