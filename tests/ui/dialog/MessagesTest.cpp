// What each message of the run does to the window, returns, and asks of the engine.
#include <windows.h>

#include <commctrl.h>

#include "tests/ui/dialog/ProbedDialog.h"

namespace pdx {
namespace {

using namespace testing_support;
using Calls = std::vector<std::string>;

constexpr auto failed = static_cast<WPARAM>(E_FAIL);
constexpr auto policyForbids = static_cast<WPARAM>(0x800704EC);

const Calls offered = {"meridian_uninstall_overlay_uninstall_bastion impression",
                       "meridian_uninstall_overlay_not_now impression", "meridian_uninstall_overlay_close impression"};
const Calls started = {"meridian_start_lets_go impression", "meridian_start_user_agreement impression",
                       "meridian_start_install_options impression", "meridian_start_close impression"};
constexpr auto starting = L"installer_uninstall_initial_progress_title";
const Calls consents = {"SetVariableNumeric(PDX_SUBMIT_ERROR_REPORT, 1)"};

/// One message on a blank page, and what follows.
struct Row {
    UINT sends;
    WPARAM with = 0;
    LPARAM restart = 0;
    Turn user = {};  ///< at the prompt that opens
    int returns = 0;
    PageKind page = pageBlank;
    const wchar_t* progress = nullptr;  ///< the title of the progress page
    const wchar_t* title = nullptr;     ///< of another page
    Calls calls = {};
    Calls reports = {};
};

using Rows = std::vector<Row>;

/// All rows on one dialog.
void play(ProbedDialog& probed, const Rows& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE("row " + std::to_string(&row - rows.data()));
        probed.dialog->ReplacePage({});
        if (row.user.sees) probed.user({row.user});
        EXPECT_EQ(probed.send(row.sends, row.with, row.restart), row.returns);
        probed.settle();
        if (IsWindow(probed.window())) {
            EXPECT_EQ(probed.page(), row.progress ? pageProgress : row.page);
        }
        if (row.progress) {
            EXPECT_TRUE(probed.dialog->progressBar->isMarquee());
            probed.send(WM_BA_EXECUTE_PROGRESS, 0, 40);
            EXPECT_FALSE(probed.dialog->progressBar->isMarquee());
        }
        if (const wchar_t* const title = row.progress ? row.progress : row.title) {
            EXPECT_EQ(probed.text(), readable(title));
        }
        EXPECT_EQ(probed.newCalls(), row.calls);
        EXPECT_EQ(probed.newlyReported(), row.reports);
    }
}

TEST(DialogMessages, AnInstallsMessageShowsItsPageAndReturnsTheUsersAnswer) {
    ProbedDialog probed;
    ErrorInfo retryCancel = {1, 1603, MB_RETRYCANCEL | MB_ICONWARNING, IDCANCEL},
              yesNoCancel = {1, 1603, MB_YESNOCANCEL, IDCANCEL};
    const auto two = reinterpret_cast<WPARAM>(&retryCancel), three = reinterpret_cast<WPARAM>(&yesNoCancel);
    constexpr auto installing = L"installer_install_progress_title", unknown = L"INSTALLER_ERROR_UNKNOWN_TITLE",
                   restart = L"INSTALLER_UNINSTALL_RESTART_REQUIRED_TITLE",
                   offline = L"INSTALLER_ERROR_CONNECTION_TITLE", installed = L"installer_already_installed_title",
                   older = L"INSTALLER_DIALOG_UNINSTALL_BASTION_CONFIRMATION_TITLE",
                   removing = L"INSTALLER_MODAL_UNINSTALLING_BASTION_TITLE",
                   denied = L"ERROR_INSTALLER_ELEVATED-PERMISSIONS_TITLE";
    const Calls quits = {"Quit(0)"}, fails = {"Quit(1)"};
    const Rows rows = {
        {.sends = WM_APP + 1},
        {.sends = WM_APP + 58},
        {.sends = WM_BA_DETECT_UPDATE_BEGIN, .progress = L"installer_checking_update_title"},
        {.sends = WM_BA_DETECT_COMPLETE, .page = pageWelcome, .title = L"installer_welcome_body", .reports = started},
        {.sends = WM_BA_DETECT_COMPLETE, .with = failed, .page = pageWelcome, .reports = started},
        {.sends = WM_BA_PLAN_COMPLETE, .calls = {"Apply"}},
        {.sends = WM_BA_PLAN_COMPLETE, .with = failed, .calls = {"Apply"}},
        {.sends = WM_BA_ERROR, .with = two, .user = {unknown, IDC_ACTION1}, .returns = IDRETRY, .calls = consents},
        {.sends = WM_BA_ERROR, .with = two, .user = {unknown, IDC_ACTION2}, .returns = IDCANCEL, .calls = consents},
        {.sends = WM_BA_ERROR, .with = three, .user = {unknown, IDC_ACTION3}, .returns = IDCANCEL, .calls = consents},
        {.sends = WM_BA_CACHE_BEGIN, .progress = installing},
        {.sends = WM_BA_CACHE_ACQUIRE_BEGIN, .with = 1},
        {.sends = WM_BA_CACHE_ACQUIRE_COMPLETE},
        {.sends = WM_BA_CACHE_ACQUIRE_COMPLETE, .with = failed, .user = {offline, IDC_ACTION1}, .returns = IDRETRY},
        {.sends = WM_BA_EXECUTE_BEGIN, .with = 1},
        {.sends = WM_BA_EXECUTE_PACKAGE_BEGIN, .with = TRUE, .progress = installing},
        {.sends = WM_BA_APPLY_COMPLETE, .calls = quits},
        {.sends = WM_BA_APPLY_COMPLETE, .with = failed, .calls = fails},
        {.sends = WM_BA_APPLY_COMPLETE, .restart = 1, .user = {restart, IDC_ACTION1}, .returns = 102, .calls = quits},
        {.sends = WM_BA_APPLY_COMPLETE, .restart = 2, .user = {restart, IDC_ACTION1}, .returns = 102, .calls = quits},
        {.sends = WM_BA_APPLY_COMPLETE, .with = failed, .restart = 1, .user = {restart, IDC_ACTION2}, .calls = fails},
        {.sends = WM_BA_APPLY_COMPLETE, .with = policyForbids, .user = {denied, IDC_ACTION1}, .calls = fails},
        {.sends = WM_BA_PROMPT_ALREADY_INSTALLED, .user = {installed, IDC_ACTION1}, .returns = 1},
        {.sends = WM_BA_PROMPT_ALREADY_INSTALLED, .user = {installed, IDC_ACTION2}, .returns = 2},
        {.sends = WM_BA_REPAIR_INITIALIZING, .progress = L"installer_initializing_repair_title"},
        {.sends = WM_BA_SENDING_ERROR_REPORT, .progress = L"ERROR_DIALOG_CRASH_SEND-REPORT"},
        {.sends = WM_BA_PROMPT_BASTION_UNINSTALL, .user = {older, IDC_ACTION1}, .returns = 1, .reports = offered},
        {.sends = WM_BA_PROMPT_BASTION_UNINSTALL, .user = {older, IDC_ACTION2}, .returns = 2, .reports = offered},
        {.sends = WM_BA_UNINSTALLING_BASTION_TITLE, .title = removing},
        {.sends = WM_BA_UNINSTALLING_BASTION, .progress = removing},
    };
    play(probed, rows);
    EXPECT_TRUE(IsWindowVisible(probed.window()));
    probed.engine.variables.set(L"IsThickInstaller", std::wstring(L"no"));
    probed.engine.variables.set(L"PDX_REPAIR", std::wstring(L"1"));
    const Rows thin = {
        {.sends = WM_BA_CACHE_BEGIN, .progress = L"installer_download_progress_title"},
        {.sends = WM_BA_EXECUTE_PACKAGE_BEGIN, .with = TRUE, .progress = installing},
        {.sends = WM_BA_DETECT_COMPLETE, .calls = {"Plan(5)"}, .reports = {"enable"}},
    };
    play(probed, thin);
}

TEST(DialogMessages, AnUninstallAsksFirstAndClosesItsWindowAtTheEnd) {
    constexpr auto confirm = L"INSTALLER_UNINSTALL_CONFIRM_TITLE", complete = L"INSTALLER_UNINSTALL_COMPLETE_TITLE",
                   removing = L"installer_uninstall_progress_title";
    const Calls repairs = {"SetVariableNumeric(PDX_REPAIR, 1)", "Quit(0)"};
    ProbedDialog probed(BOOTSTRAPPER_ACTION_UNINSTALL);
    const Rows rows = {
        {.sends = WM_BA_DETECT_COMPLETE,
         .user = {confirm, IDC_ACTION1},
         .progress = starting,
         .calls = {"Plan(3)"},
         .reports = {"enable"}},
        {.sends = WM_BA_DETECT_COMPLETE, .user = {confirm, IDC_ACTION2}, .calls = repairs, .reports = {"enable"}},
        {.sends = WM_BA_EXECUTE_PACKAGE_BEGIN, .with = TRUE, .progress = removing},
        // The window's end asks for a quit before the status does.
        {.sends = WM_BA_APPLY_COMPLETE, .user = {complete, IDC_ACTION1}, .calls = {"Quit(0)", "Quit(0)"}},
    };
    play(probed, rows);
    SetEnvironmentVariableW(L"PDX_REPAIR", nullptr);
    EXPECT_FALSE(IsWindow(probed.window()));
    EXPECT_EQ(probed.quitCode, 0);

    ProbedDialog failing(BOOTSTRAPPER_ACTION_UNINSTALL);
    play(failing, {{.sends = WM_BA_APPLY_COMPLETE, .with = failed, .calls = {"Quit(0)", "Quit(1)"}}});
    EXPECT_FALSE(IsWindow(failing.window()));
}

TEST(DialogMessages, AnUpdateHidesItsWindowExceptForAPrompt) {
    for (const auto action : {BOOTSTRAPPER_ACTION_UPDATE_REPLACE, BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED}) {
        ProbedDialog probed(action, BOOTSTRAPPER_DISPLAY_EMBEDDED);
        Row detected = {.sends = WM_BA_DETECT_COMPLETE, .calls = {"Plan(" + std::to_string(action) + ")"}};
        if (action == BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED) {
            detected.progress = L"installer_download_progress_title";
            detected.reports = {"enable"};
        }
        play(probed, {detected});
        EXPECT_TRUE(IsWindowVisible(probed.window()));
        probed.send(WM_BA_EXECUTE_BEGIN, 1);
        EXPECT_FALSE(IsWindowVisible(probed.window()));
        const auto shown = [&] { EXPECT_TRUE(IsWindowVisible(probed.window())); };
        probed.user({{.sees = L"INSTALLER_ERROR_CONNECTION_TITLE", .presses = IDC_ACTION1, .meanwhile = shown}});
        probed.send(WM_BA_CACHE_ACQUIRE_COMPLETE, failed);
    }
}

TEST(DialogMessages, ASilentOrPassiveRunAnswersByDefault) {
    ErrorInfo denied = {0, 1602, MB_ABORTRETRYIGNORE, IDIGNORE};
    const auto error = reinterpret_cast<WPARAM>(&denied);
    for (const auto display : {BOOTSTRAPPER_DISPLAY_NONE, BOOTSTRAPPER_DISPLAY_PASSIVE}) {
        ProbedDialog probed(BOOTSTRAPPER_ACTION_INSTALL, display);
        const Rows rows = {
            {.sends = WM_BA_DETECT_COMPLETE, .calls = {"Plan(5)"}, .reports = {"enable"}},
            {.sends = WM_BA_ERROR, .with = error, .returns = IDIGNORE, .calls = consents},
            {.sends = WM_BA_CACHE_ACQUIRE_COMPLETE, .with = failed, .returns = IDCANCEL},
            {.sends = WM_BA_PROMPT_ALREADY_INSTALLED, .returns = IDOK},
            {.sends = WM_BA_PROMPT_BASTION_UNINSTALL, .returns = IDCANCEL, .reports = offered},
            {.sends = WM_BA_APPLY_COMPLETE, .restart = 1, .returns = 102, .calls = {"Quit(0)"}},
        };
        play(probed, rows);
        EXPECT_EQ(IsWindowVisible(probed.window()) != FALSE, display == BOOTSTRAPPER_DISPLAY_PASSIVE);
        probed.press(escape);
        EXPECT_TRUE(IsWindow(probed.window())) << "Escape cancels nothing";
    }
    ProbedDialog probed(BOOTSTRAPPER_ACTION_UNINSTALL, BOOTSTRAPPER_DISPLAY_NONE);
    play(probed, {{.sends = WM_BA_DETECT_COMPLETE, .progress = starting, .calls = {"Plan(3)"}, .reports = {"enable"}}});
}

LRESULT CALLBACK countPositions(HWND bar, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR, DWORD_PTR count) {
    if (message == PBM_SETPOS) ++*reinterpret_cast<int*>(count);
    return DefSubclassProc(bar, message, wparam, lparam);
}

TEST(DialogMessages, ProgressMovesTheBarOnlyToANewPercentage) {
    ProbedDialog probed;
    int moves = 0;
    SetWindowSubclass(probed.item(IDC_PROGRESS), countPositions, 1, reinterpret_cast<DWORD_PTR>(&moves));
    probed.send(WM_BA_CACHE_BEGIN);
    const struct {
        UINT sends;
        WPARAM wparam;  ///< overall for a download, the package's for an execution
        LPARAM lparam;  ///< overall for an execution
        int moves, shown;
    } rows[] = {
        {.sends = WM_BA_CACHE_ACQUIRE_PROGRESS, .wparam = 33, .lparam = 90, .moves = 1, .shown = 33},
        {.sends = WM_BA_CACHE_ACQUIRE_PROGRESS, .wparam = 33, .lparam = 91, .moves = 1, .shown = 33},
        {.sends = WM_BA_EXECUTE_PROGRESS, .wparam = 90, .lparam = 33, .moves = 1, .shown = 33},
        {.sends = WM_BA_EXECUTE_PROGRESS, .wparam = 90, .lparam = 34, .moves = 2, .shown = 34},
        {.sends = WM_BA_CACHE_ACQUIRE_PROGRESS, .wparam = 0, .lparam = 0, .moves = 3, .shown = 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(probed.send(row.sends, row.wparam, row.lparam), 0);
        EXPECT_EQ(moves, row.moves);
        EXPECT_EQ(probed.progress(), row.shown);
    }
    for (int time = 0; time < 10000; ++time) probed.send(WM_BA_EXECUTE_PROGRESS, 0, time / 99);
    EXPECT_EQ(moves, 3 + 101) << "one for each percentage";
    EXPECT_EQ(probed.progress(), 100);
}

}  // namespace
}  // namespace pdx
