// What each message of the application does to the window, answers, and asks of the engine.
#include <windows.h>

#include <commctrl.h>

#include "tests/ui/dialog/ProbedDialog.h"

namespace pdx {
namespace {

using namespace testing_support;
using Calls = std::vector<std::string>;

constexpr auto policyForbids = static_cast<HRESULT>(0x800704EC);

const Calls offered = {"meridian_uninstall_overlay_uninstall_bastion impression",
                       "meridian_uninstall_overlay_not_now impression", "meridian_uninstall_overlay_close impression"};

struct Row {
    const char* what;
    UINT message;
    WPARAM wparam = 0;
    LPARAM lparam = 0;
    const wchar_t* prompt = nullptr;  ///< the title of the prompt that opens
    int32_t press = 0;                ///< what the user presses there
    int answer = 0;
    int32_t page = pageBlank;
    const wchar_t* title = nullptr;  ///< of the page that is left
    Calls calls = {};
    Calls reported = {};
};

/// All rows on one dialog, each from a blank page.
void play(ProbedDialog& probed, const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        probed.dialog->ReplacePage({});
        bool prompted = false;
        if (row.press)
            probed.later([&] {
                prompted = true;
                EXPECT_EQ(probed.text(), readable(row.prompt));
                probed.press(row.press);
            });
        EXPECT_EQ(probed.send(row.message, row.wparam, row.lparam), row.answer);
        EXPECT_EQ(prompted, row.press != 0);
        probed.settle();
        if (IsWindow(probed.window())) {
            EXPECT_EQ(probed.page(), row.page);
        }
        if (row.page == pageProgress) {
            EXPECT_TRUE(probed.dialog->progressBar->isMarquee());
            probed.send(WM_BA_EXECUTE_PROGRESS, 0, 40);
            EXPECT_FALSE(probed.dialog->progressBar->isMarquee());
        }
        if (row.title) {
            EXPECT_EQ(probed.text(), readable(row.title));
        }
        EXPECT_EQ(probed.newCalls(), row.calls);
        EXPECT_EQ(probed.newlyReported(), row.reported);
    }
}

TEST(DialogMessages, OfAnInstallation) {
    ProbedDialog probed;
    ErrorInfo relative = {1, 1603, MB_RETRYCANCEL | MB_ICONWARNING, IDCANCEL};
    const auto error = reinterpret_cast<WPARAM>(&relative);
    ErrorInfo three = {1, 1603, MB_YESNOCANCEL, IDCANCEL}, others = {1, 1603, MB_CANCELTRYCONTINUE, IDCANCEL};
    const auto wide = reinterpret_cast<WPARAM>(&three), wider = reinterpret_cast<WPARAM>(&others);
    const Calls sends = {"SetVariableNumeric(PDX_SUBMIT_ERROR_REPORT, 1)"};
    const Calls started = {"meridian_start_lets_go impression", "meridian_start_user_agreement impression",
                           "meridian_start_install_options impression", "meridian_start_close impression"};
    constexpr auto installing = L"installer_install_progress_title";
    constexpr auto restart = L"INSTALLER_UNINSTALL_RESTART_REQUIRED_TITLE";
    constexpr auto unknown = L"INSTALLER_ERROR_UNKNOWN_TITLE";
    constexpr auto offline = L"INSTALLER_ERROR_CONNECTION_TITLE";
    constexpr auto installed = L"installer_already_installed_title";
    constexpr auto older = L"INSTALLER_DIALOG_UNINSTALL_BASTION_CONFIRMATION_TITLE";
    constexpr auto removing = L"INSTALLER_MODAL_UNINSTALLING_BASTION_TITLE";
    constexpr auto denied = L"ERROR_INSTALLER_ELEVATED-PERMISSIONS_TITLE";
    const auto failed = static_cast<WPARAM>(E_FAIL), forbidden = static_cast<WPARAM>(policyForbids);
    play(probed,
         {
             {"below the range", WM_APP + 1},
             {"update check", WM_BA_DETECT_UPDATE_BEGIN, 0, 0, {}, 0, 0, 4, L"installer_checking_update_title"},
             {"detected", WM_BA_DETECT_COMPLETE, 0, 0, {}, 0, 0, 1, L"installer_welcome_body", {}, started},
             {"detected with a failure", WM_BA_DETECT_COMPLETE, failed, 0, {}, 0, 0, 1, {}, {}, started},
             {"planned", WM_BA_PLAN_COMPLETE, 0, 0, {}, 0, 0, 0, {}, {"Apply"}},
             {"planned with a failure", WM_BA_PLAN_COMPLETE, failed, 0, {}, 0, 0, 0, {}, {"Apply"}},
             {"error, first button", WM_BA_ERROR, error, 0, unknown, IDC_ACTION1, IDRETRY, 0, {}, sends},
             {"error, second button", WM_BA_ERROR, error, 0, unknown, IDC_ACTION2, IDCANCEL, 0, {}, sends},
             {"error, third of three", WM_BA_ERROR, wide, 0, unknown, IDC_ACTION3, IDCANCEL, 0, {}, sends},
             {"error, third of others", WM_BA_ERROR, wider, 0, unknown, IDC_ACTION3, IDCONTINUE, 0, {}, sends},
             {"cache", WM_BA_CACHE_BEGIN, 0, 0, {}, 0, 0, 4, installing},
             {"acquire begins", WM_BA_CACHE_ACQUIRE_BEGIN, 1, 0},
             {"acquired", WM_BA_CACHE_ACQUIRE_COMPLETE},
             {"not acquired", WM_BA_CACHE_ACQUIRE_COMPLETE, failed, 0, offline, IDC_ACTION1, IDRETRY},
             {"executes", WM_BA_EXECUTE_BEGIN, 1},
             {"package", WM_BA_EXECUTE_PACKAGE_BEGIN, TRUE, 0, {}, 0, 0, 4, installing},
             {"applied", WM_BA_APPLY_COMPLETE, 0, 0, {}, 0, 0, 0, {}, {"Quit(0)"}},
             {"not applied", WM_BA_APPLY_COMPLETE, failed, 0, {}, 0, 0, 0, {}, {"Quit(1)"}},
             {"restart wanted", WM_BA_APPLY_COMPLETE, 0, 1, restart, IDC_ACTION1, 102, 0, {}, {"Quit(0)"}},
             {"restart begun", WM_BA_APPLY_COMPLETE, 0, 2, restart, IDC_ACTION1, 102, 0, {}, {"Quit(0)"}},
             {"restart later", WM_BA_APPLY_COMPLETE, failed, 1, restart, IDC_ACTION2, 0, 0, {}, {"Quit(1)"}},
             {"no rights", WM_BA_APPLY_COMPLETE, forbidden, 0, denied, IDC_ACTION1, 0, 0, {}, {"Quit(1)"}},
             {"launch", WM_BA_PROMPT_ALREADY_INSTALLED, 0, 0, installed, IDC_ACTION1, 1},
             {"repair", WM_BA_PROMPT_ALREADY_INSTALLED, 0, 0, installed, IDC_ACTION2, 2},
             {"repair starts", WM_BA_REPAIR_INITIALIZING, 0, 0, {}, 0, 0, 4, L"installer_initializing_repair_title"},
             {"report is sent", WM_BA_SENDING_ERROR_REPORT, 0, 0, {}, 0, 0, 4, L"ERROR_DIALOG_CRASH_SEND-REPORT"},
             {"older client, go", WM_BA_PROMPT_BASTION_UNINSTALL, 0, 0, older, IDC_ACTION1, 1, 0, {}, {}, offered},
             {"older client, stay", WM_BA_PROMPT_BASTION_UNINSTALL, 0, 0, older, IDC_ACTION2, 2, 0, {}, {}, offered},
             {"older client's title", WM_BA_UNINSTALLING_BASTION_TITLE, 0, 0, {}, 0, 0, 0, removing},
             {"older client's page", WM_BA_UNINSTALLING_BASTION, 0, 0, {}, 0, 0, 4, removing},
             {"above the range", WM_APP + 58},
         });
    EXPECT_TRUE(IsWindowVisible(probed.window()));
    probed.engine.variables.set(L"IsThickInstaller", std::wstring(L"no"));
    probed.engine.variables.set(L"PDX_REPAIR", std::wstring(L"1"));
    play(probed, {{"cache of the thin one", WM_BA_CACHE_BEGIN, 0, 0, {}, 0, 0, 4, L"installer_download_progress_title"},
                  {"package of it", WM_BA_EXECUTE_PACKAGE_BEGIN, TRUE, 0, {}, 0, 0, 4, installing},
                  {"detected in a repair", WM_BA_DETECT_COMPLETE, 0, 0, {}, 0, 0, 0, {}, {"Plan(5)"}, {"enable"}}});
}

TEST(DialogMessages, OfAnUninstallation) {
    ProbedDialog probed(BOOTSTRAPPER_ACTION_UNINSTALL);
    constexpr auto confirm = L"INSTALLER_UNINSTALL_CONFIRM_TITLE";
    constexpr auto starting = L"installer_uninstall_initial_progress_title";
    const Calls repairs = {"SetVariableNumeric(PDX_REPAIR, 1)", "Quit(0)"};
    constexpr auto complete = L"INSTALLER_UNINSTALL_COMPLETE_TITLE";
    play(probed,
         {
             {"confirmed", WM_BA_DETECT_COMPLETE, 0, 0, confirm, IDC_ACTION1, 0, 4, starting, {"Plan(3)"}, {"enable"}},
             {"repair instead", WM_BA_DETECT_COMPLETE, 0, 0, confirm, IDC_ACTION2, 0, 0, {}, repairs, {"enable"}},
             {"package", WM_BA_EXECUTE_PACKAGE_BEGIN, 1, 0, {}, 0, 0, 4, L"installer_uninstall_progress_title"},
             // The window goes, and says so, before the status does.
             {"done", WM_BA_APPLY_COMPLETE, 0, 0, complete, IDC_ACTION1, 0, 0, {}, {"Quit(0)", "Quit(0)"}},
         });
    SetEnvironmentVariableW(L"PDX_REPAIR", nullptr);
    EXPECT_FALSE(IsWindow(probed.window()));
    EXPECT_EQ(probed.quitCode, 0);

    ProbedDialog failing(BOOTSTRAPPER_ACTION_UNINSTALL);
    play(failing,
         {{"failed", WM_BA_APPLY_COMPLETE, static_cast<WPARAM>(E_FAIL), 0, {}, 0, 0, 0, {}, {"Quit(0)", "Quit(1)"}}});
    EXPECT_FALSE(IsWindow(failing.window()));
}

TEST(DialogMessages, OfTheUpdateInsideAnotherRun) {
    for (const auto action : {BOOTSTRAPPER_ACTION_UPDATE_REPLACE, BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED}) {
        ProbedDialog probed(action, BOOTSTRAPPER_DISPLAY_EMBEDDED);
        const bool embedded = action == BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED;
        const int32_t page = embedded ? pageProgress : pageBlank;
        const wchar_t* title = embedded ? L"installer_download_progress_title" : nullptr;
        const Calls reported = embedded ? Calls{"enable"} : Calls{};
        const std::string plan = "Plan(" + std::to_string(action) + ")";
        play(probed, {{"detected", WM_BA_DETECT_COMPLETE, 0, 0, {}, 0, 0, page, title, {plan}, reported}});
        EXPECT_TRUE(IsWindowVisible(probed.window()));
        probed.send(WM_BA_EXECUTE_BEGIN, 1);
        EXPECT_FALSE(IsWindowVisible(probed.window()));
        probed.later([&] {
            EXPECT_TRUE(IsWindowVisible(probed.window())) << "for whoever has to answer a prompt";
            probed.press(IDC_ACTION1);
        });
        probed.send(WM_BA_CACHE_ACQUIRE_COMPLETE, static_cast<WPARAM>(E_FAIL));
    }
}

TEST(DialogMessages, AnswerThemselvesWhereNobodyWatches) {
    ErrorInfo denied = {0, 1602, MB_ABORTRETRYIGNORE, IDIGNORE};
    const auto error = reinterpret_cast<WPARAM>(&denied);
    const auto failed = static_cast<WPARAM>(E_FAIL);
    const Calls sends = {"SetVariableNumeric(PDX_SUBMIT_ERROR_REPORT, 1)"};
    for (const auto display : {BOOTSTRAPPER_DISPLAY_NONE, BOOTSTRAPPER_DISPLAY_PASSIVE}) {
        ProbedDialog probed(BOOTSTRAPPER_ACTION_INSTALL, display);
        play(probed, {{"detected", WM_BA_DETECT_COMPLETE, 0, 0, {}, 0, 0, 0, {}, {"Plan(5)"}, {"enable"}},
                      {"error", WM_BA_ERROR, error, 0, {}, 0, IDIGNORE, 0, {}, sends},
                      {"not acquired", WM_BA_CACHE_ACQUIRE_COMPLETE, failed, 0, {}, 0, IDCANCEL},
                      {"installed", WM_BA_PROMPT_ALREADY_INSTALLED, 0, 0, {}, 0, IDOK},
                      {"older client", WM_BA_PROMPT_BASTION_UNINSTALL, 0, 0, {}, 0, IDCANCEL, 0, {}, {}, offered},
                      {"restart", WM_BA_APPLY_COMPLETE, 0, 1, {}, 0, 102, 0, {}, {"Quit(0)"}}});
        EXPECT_EQ(IsWindowVisible(probed.window()) != FALSE, display == BOOTSTRAPPER_DISPLAY_PASSIVE);
        probed.dismiss();
        EXPECT_TRUE(IsWindow(probed.window())) << "Escape ends nothing where nobody is asked";
    }
    ProbedDialog probed(BOOTSTRAPPER_ACTION_UNINSTALL, BOOTSTRAPPER_DISPLAY_NONE);
    play(probed, {{"detected", WM_BA_DETECT_COMPLETE, 0, 0, {}, 0, 0, 4, {}, {"Plan(3)"}, {"enable"}}});
}

LRESULT CALLBACK countPositions(HWND bar, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR, DWORD_PTR count) {
    if (message == PBM_SETPOS) ++*reinterpret_cast<int*>(count);
    return DefSubclassProc(bar, message, wparam, lparam);
}

TEST(DialogMessages, OfProgressMoveTheBarOnlyToANewPercentage) {
    ProbedDialog probed;
    int count = 0;
    SetWindowSubclass(probed.item(IDC_PROGRESS), countPositions, 1, reinterpret_cast<DWORD_PTR>(&count));
    probed.send(WM_BA_CACHE_BEGIN);
    const struct {
        UINT message;
        WPARAM wparam;
        LPARAM lparam;
        int count;
        int shown;
    } rows[] = {
        {WM_BA_CACHE_ACQUIRE_PROGRESS, 33, 90, 1, 33}, {WM_BA_CACHE_ACQUIRE_PROGRESS, 33, 91, 1, 33},
        {WM_BA_EXECUTE_PROGRESS, 90, 33, 1, 33},       {WM_BA_EXECUTE_PROGRESS, 90, 34, 2, 34},
        {WM_BA_CACHE_ACQUIRE_PROGRESS, 0, 0, 3, 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(probed.send(row.message, row.wparam, row.lparam), 0);
        EXPECT_EQ(count, row.count);
        EXPECT_EQ(probed.progress(), row.shown);
    }
    for (int time = 0; time < 10000; ++time) probed.send(WM_BA_EXECUTE_PROGRESS, 0, time / 99);
    EXPECT_EQ(count, 3 + 101) << "one for each percentage but the first, which was there";
    EXPECT_EQ(probed.progress(), 100);
}

}  // namespace
}  // namespace pdx
