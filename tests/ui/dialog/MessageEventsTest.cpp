// What the dialog tells of what it shows and of what is pressed, and when it lets telemetry go out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "config/Settings.h"
#include "platform/Registry.h"
#include "platform/RegistryPaths.h"
#include "tests/ui/dialog/DialogBench.h"

namespace pdx {
namespace {

using Texts = std::vector<std::string>;

struct Stage : testing_support::DialogBench {
    Stage(BOOTSTRAPPER_ACTION action, BOOTSTRAPPER_DISPLAY display) : DialogBench(action, display) {
        engine.variables.set(L"PDX_MERIDIAN_COHORT", std::wstring(L"cohort 7"));
    }
    void followLink(const wchar_t* href) const {
        LinkNotification link = {};
        link.idFrom = IDC_BODY;
        link.code = linkActivated;
        link.href = href;
        dialog->OnNotify(reinterpret_cast<LPARAM>(&link));
    }

    /// "meridian_start_close click", "enable" and so on.
    Texts newlyTold() {
        const std::string message = "tally message ";
        Texts found = told();
        found.erase(found.begin(), found.begin() + static_cast<ptrdiff_t>(toldBefore));
        for (std::string& text : found) {
            if (!text.starts_with(message)) continue;
            const auto attributes = nlohmann::json::parse(text.substr(message.size()));
            text = attributes["msg_id"].get<std::string>() + " " + attributes["status"].get<std::string>();
            const bool overlay = text.find("overlay") != std::string::npos;
            EXPECT_EQ(attributes["destination_name"], overlay ? "uninstall_bastion_overlay" : "your_games_overlay");
            EXPECT_EQ(attributes["track"]["trackingtag"], "cohort 7");
            EXPECT_EQ(attributes["pgid"], overlay ? "uninstall_bastion_option" : "install_defaults");
        }
        return found;
    }
};

const Texts startShown = {"meridian_start_lets_go impression", "meridian_start_user_agreement impression",
                          "meridian_start_install_options impression", "meridian_start_close impression"};
const Texts overlayShown = {"meridian_uninstall_overlay_uninstall_bastion impression",
                            "meridian_uninstall_overlay_not_now impression",
                            "meridian_uninstall_overlay_close impression"};

Texts with(Texts first, const Texts& more) {
    first.insert(first.end(), more.begin(), more.end());
    return first;
}

TEST(MessageEvents, TellWhatIsPressedAndShown) {
    // act: on the welcome page
    const std::tuple<const char*, std::function<void(Stage&)>, Texts> rows[] = {
        {"the button", [](Stage& s) { s.press(IDC_ACTION1); }, {"enable", "meridian_start_lets_go click"}},
        {"the options", [](Stage& s) { s.press(IDC_OPTIONS); }, {"meridian_start_install_options click"}},
        {"the button of the options",
         [](Stage& s) {
             s.press(IDC_OPTIONS);
             s.press(IDC_ACTION1);
         },
         {"meridian_start_install_options click", "enable", "meridian_start_lets_go click"}},
        {"the agreement",
         [](Stage& s) { s.followLink(L"action:openuseragreement"); },
         {"meridian_start_user_agreement click"}},
        {"the cross",
         [](Stage& s) {
             s.pressLater(IDC_ACTION1);
             s.press(IDC_CLOSE);
         },
         {"meridian_start_close click"}},
        {"the cross of the options",
         [](Stage& s) {
             s.press(IDC_OPTIONS);
             s.pressLater(IDC_ACTION1);
             s.press(IDC_CLOSE);
         },
         {"meridian_start_install_options click"}},
        {"the overlay and its cross",
         [](Stage& s) {
             s.pressLater(IDC_CLOSE);
             s.pressLater(IDC_ACTION1);
             s.pressLater(IDC_ACTION2);
             EXPECT_EQ(s.send(WM_BA_PROMPT_BASTION_UNINSTALL), IDCANCEL);
         },
         with(overlayShown, {"meridian_uninstall_overlay_close click"})},
    };
    for (const auto& [what, act, told] : rows) {
        SCOPED_TRACE(what);
        Stage stage(BOOTSTRAPPER_ACTION_INSTALL, BOOTSTRAPPER_DISPLAY_FULL);
        stage.send(WM_BA_DETECT_COMPLETE);
        act(stage);
        EXPECT_EQ(stage.newlyTold(), with(startShown, told));
    }
}

TEST(MessageEvents, TellTheAnswerAboutTheOlderClient) {
    RegistryKey::localMachine(view32).setSubKeyValue(olderClientKey, L"InstallSuccesfull", std::wstring(L"1"));
    const std::tuple<std::vector<int32_t>, const char*, const wchar_t*> rows[] = {
        {{IDC_ACTION1}, "meridian_uninstall_overlay_uninstall_bastion click", L"1"},
        {{IDC_ACTION2}, "meridian_uninstall_overlay_not_now click", L"0"},
        // The cross, and the installer is to end: the window goes without an answer.
        {{IDC_CLOSE, IDC_ACTION2}, "meridian_uninstall_overlay_close click", L"0"}};
    for (const auto& [buttons, told, variable] : rows) {
        Stage stage(BOOTSTRAPPER_ACTION_INSTALL, BOOTSTRAPPER_DISPLAY_FULL);
        std::istringstream settings("[app]\nmeridian.enableMigration = true\nmeridian.promptBastionUninstall = true\n");
        g_config.set(std::make_shared<ConfigMap>(LoadConfigStream(settings)));
        stage.send(WM_BA_DETECT_COMPLETE);
        for (const int32_t button : buttons) stage.pressLater(button);
        stage.press(IDC_ACTION1);
        Texts wanted = with(startShown, {"enable", "meridian_start_lets_go click"});
        EXPECT_EQ(stage.newlyTold(), with(with(wanted, overlayShown), {told}));
        EXPECT_EQ(stage.engine.variables.text(L"PDX_UNINSTALL_BASTION"), variable);
        EXPECT_EQ(stage.newCalls().back() == "Plan(5)", buttons.size() == 1);
    }
    RegDeleteTreeW(RegistryKey::localMachine(view32).createSubKey(L"Software", true).get(), L"Bastion");
}

TEST(MessageEvents, GoOutWithoutAWordWhereNobodyIsAsked) {
    const std::tuple<BOOTSTRAPPER_ACTION, BOOTSTRAPPER_DISPLAY, Texts> rows[] = {
        {BOOTSTRAPPER_ACTION_INSTALL, BOOTSTRAPPER_DISPLAY_NONE, {"enable"}},
        {BOOTSTRAPPER_ACTION_INSTALL, BOOTSTRAPPER_DISPLAY_FULL, startShown},
        {BOOTSTRAPPER_ACTION_UNINSTALL, BOOTSTRAPPER_DISPLAY_NONE, {"enable"}},
        {BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED, BOOTSTRAPPER_DISPLAY_FULL, {"enable"}},
        {BOOTSTRAPPER_ACTION_UPDATE_REPLACE, BOOTSTRAPPER_DISPLAY_FULL, {}},
    };
    for (const auto& [action, display, told] : rows) {
        Stage stage(action, display);
        stage.send(WM_BA_DETECT_COMPLETE);
        EXPECT_EQ(stage.newlyTold(), told) << action;
    }
}

}  // namespace
}  // namespace pdx
