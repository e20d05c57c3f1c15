// What each callback reports of the run, to whom and in which order; and the life of telemetry around it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "config/Settings.h"
#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/product/InstallerVersion.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"
#include "platform/Text.h"
#include "tests/core/ApplicationProbe.h"

namespace pdx {
namespace {

using App = ProbedApplication;
using testing::ElementsAreArray;
using testing::HasSubstr;
using Texts = std::vector<std::string>;

constexpr auto failed = static_cast<HRESULT>(0xa7ff0643);  // the system has no text for it
constexpr auto install = BOOTSTRAPPER_ACTION_INSTALL;
constexpr auto fetch = BOOTSTRAPPER_CACHE_OPERATION_DOWNLOAD;

/// Attributes of every error: code, context, number of the callback, text.
std::string errorTail(const char* context, int operation, const char* text = "a7ff0643") {
    return std::string(R"("ecod":"a7ff0643","ectx":)") + context + R"(,"einv":true,"emsg":"unknown","eopr":)" +
           std::to_string(operation) + R"(,"estr":")" + text + R"(",<runtimes>})";
}

struct Row {
    const char* what;
    BOOTSTRAPPER_ACTION action = install;
    std::vector<std::pair<const wchar_t*, const wchar_t*>> variables = {};
    std::function<void(App&)> call;
    bool ends = false;    ///< by OnShutdown, which reports the end of the session after all others
    Texts reported = {};  ///< after what is reported when the application is made
};

const Row rows[] = {
    {.what = "a copy is no download",
     .call =
         [](App& a) {
             a.OnCacheAcquireBegin(L"p", L"l", BOOTSTRAPPER_CACHE_OPERATION_COPY, L"s");
             a.OnCacheAcquireProgress(L"p", L"l", 1, 2, 3);
             a.OnCacheAcquireComplete(L"p", L"l", failed, 0);
             a.OnCacheVerifyComplete(L"p", L"l", failed, 0);
         }},
    {.what = "a download in a repair",
     .variables = {{L"PDX_REPAIR", L"1"}},
     .call =
         [](App& a) {
             a.OnCacheAcquireBegin(L"p", L"l", fetch, L"https://x/a");
             a.OnCacheAcquireProgress(L"p", L"l", 4, 4, 3);
             a.OnCacheAcquireComplete(L"p", L"l", S_OK, 0);
         },
     .reported =
         {R"(tally download {"download_id":<id>,"item_platform":"pc","percent":0,"status":"start",)"
          R"("status_code":"repair"})",
          R"(brisk inst.dnld.strt {"byte":0,"link":"https://x/a","strt":<time>,"stst":"repair"})",
          R"(tally download {"download_id":<id>,"item_platform":"pc","percent":100.0,"status":"finish",)"
          R"("status_code":"success"})",
          R"(brisk inst.dnld.succ {"byte":4,"endt":<time>,"enst":"success","link":"https://x/a","pct":"100.0000",)"
          R"("strt":<time>,"stst":"repair"})"}},
    {.what = "an error",
     .call =
         [](App& a) {
             a.OnElevate();
             a.OnError(PALISADE_ERROR_TYPE, L"p", 1603, L"lone \xD800", 0, 0, nullptr, 0);
         },
     .reported = {R"(tally install {"status":"error","status_code":"a7ff0643"})",
                  R"(brisk inst.inst.erro {)" + errorTail("{}", 27, "lone \xEF\xBF\xBD")}},
    {.what = "execution succeeds", .call = [](App& a) { a.OnExecuteComplete(S_OK); }},
    {.what = "execution is cancelled", .call = [](App& a) { a.OnExecuteComplete(hresultFromWin32(userExitCode)); }},
    {.what = "execution fails with another code after a cancel",
     .call =
         [](App& a) {
             a.PromptCancel(nullptr, TRUE, nullptr, nullptr);
             a.OnExecuteComplete(failed);
         }},
    {.what = "an error with the machine's runtimes",
     .variables = {{L"VCRedist10X86InstalledVer", L"10.32"},
                   {L"VCRedist11X86InstalledVer", L"11.32"},
                   {L"VCRedist12X86InstalledVer", L"12.32"},
                   {L"VCRedist14X86InstalledVer", L"14.32"},
                   {L"VCRedist14X64InstalledVer", L"14.64"}},
     .call = [](App& a) { a.OnExecuteComplete(failed); },
     .reported =
         {R"(tally install {"installation_type":"kestrel_client","status":"error","status_code":"a7ff0643"})",
          R"(brisk inst.inst.erro {"ecod":"a7ff0643","ectx":{"stat":"a7ff0643"},"einv":true,"emsg":"unknown","eopr":43,)"
          R"("estr":"a7ff0643","vc10x86ver":"10.32","vc11x86ver":"11.32","vc12x86ver":"12.32","vc14x64ver":"14.64",)"
          R"("vc14x86ver":"14.32"})"}},
    {.what = "the older client goes in an uninstall",
     .action = BOOTSTRAPPER_ACTION_UNINSTALL,
     .call = [](App& a) { a.OnExecuteMsiMessage(L"p", 0, 0, L"CA_MSG_BASTION_UNINSTALL_SUCCESS", 0, nullptr, 0); }},
    {.what = "a repair is cancelled",
     .variables = {{L"PDX_REPAIR", L"1"}},
     .call = [](App& a) { a.UpdateInstallStatus(hresultFromWin32(userExitCode)); },
     .ends = true,
     .reported =
         {R"(tally install {"installation_type":"kestrel_client","status":"cancel","status_code":"user_action"})",
          R"(brisk inst.repr.canc {"cnst":"user_action"})"}},
    {.what = "a reload reports nothing and stops nothing",
     .call =
         [](App& a) {
             a.requestRepair();
             EXPECT_EQ(a.OnShutdown(), resultReloadBootstrapper);
             SetEnvironmentVariableW(L"PDX_REPAIR", nullptr);
         }},
};

TEST(RunTelemetry, ReportsWhatTheCatalogueHasForEachCallback) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        ProbedRun probed(row.action);
        for (const auto& [name, value] : row.variables) probed.engine.variables.set(name, std::wstring(value));
        probed.engine.variables.set(L"InstallFolder", std::wstring(L"C:\\P"));
        probed.engine.variables.set(L"DefaultInstallFolder", std::wstring(L"C:\\P"));
        const size_t before = probed.reported().size();
        row.call(probed.app());
        Texts wanted = row.reported;
        if (row.ends) {
            probed.app().OnShutdown();
            for (const char* last : {"brisk inst.sess.stop {}", "request stop", "stop"}) wanted.emplace_back(last);
        }
        Texts reported = probed.reported();
        reported.erase(reported.begin(), reported.begin() + before);
        EXPECT_THAT(reported, ElementsAreArray(wanted));
    }
}

TEST(RunTelemetry, WaitsForTheReportWhoseIdItSends) {
    const std::pair<HRESULT, const char*> cases[] = {{hresultFromWin32(userExitCode), "brisk inst.inst.canc"},
                                                     {failed, "brisk inst.inst.fail"}};
    for (const auto& [status, event] : cases) {
        ProbedRun probed;
        probed.engine.variables.set(L"PDX_SUBMIT_ERROR_REPORT", std::wstring(L"1"));
        Texts before;
        probed.world.report = [&](const ReportFiles&) {
            before = probed.reported();
            return std::string("er-1");
        };
        probed.app().UpdateInstallStatus(status);
        probed.app().OnShutdown();
        const Texts reported = probed.reported();
        const auto ending = std::ranges::find_if(reported, [&](auto& text) { return text.starts_with(event); });
        ASSERT_NE(ending, reported.end()) << event;
        EXPECT_NE(ending->find(R"("report_id":"er-1")"), std::string::npos) << *ending;
        EXPECT_LT(before.size(), static_cast<size_t>(ending - reported.begin())) << "the report goes out first";
    }
}

TEST(RunTelemetry, GoesOutAtOnceForARunThatAsksNobody) {
    // enabledAt: position among what is reported by the end of OnStartup; 0: not enabled
    const std::tuple<const wchar_t*, const wchar_t*, bool, size_t> cases[] = {
        {L"KESTREL_AUTHCODE", L"code", true, 2}, {L"KESTREL_AUTHCODE", L"code", false, 0},
        {L"KESTREL_AUTHCODE", L"", true, 0},     {L"PDX_REPAIR", L"1", false, 2},
        {L"PDX_MERIDIAN_MODE", L"1", false, 2},
    };
    for (const auto& [variable, value, olderClient, enabledAt] : cases) {
        SCOPED_TRACE(toUtf8(variable));
        if (olderClient)
            RegistryKey::localMachine(view32).setSubKeyValue(bastionKey, L"InstallSuccesfull", std::wstring(L"1"));
        ProbedRun probed;
        probed.engine.variables.set(variable, std::wstring(value));
        probed.app().OnStartup();
        const Texts reported = probed.reported();
        for (size_t i = 1; i < reported.size(); ++i) EXPECT_EQ(reported[i] == "enable", i == enabledAt) << i;
        EXPECT_EQ(reported.size() > 2, enabledAt != 0);
        RegDeleteTreeW(RegistryKey::localMachine(view32).createSubKey(L"Software", true).get(), L"Bastion");
    }
}

/// An object that asks for a reload, to its last reference.
std::weak_ptr<RecordingTelemetry> reload() {
    ProbedRun probed;
    probed.app().requestRepair();
    probed.app().OnShutdown();
    const auto telemetry = std::static_pointer_cast<RecordingTelemetry>(g_telemetry.get());
    probed.release();
    SetEnvironmentVariableW(L"PDX_REPAIR", nullptr);
    EXPECT_EQ(g_telemetry.get(), telemetry) << "it goes on without an object";
    EXPECT_EQ(probed.engine.references(), 0u);
    EXPECT_EQ(g_logger.get(), nullptr) << "its workers find no engine to log to";
    return telemetry;
}

TEST(RunTelemetry, IsHandedOnOverEveryReload) {
    const std::weak_ptr<RecordingTelemetry> earlier[] = {reload(), reload()};
    ProbedRun probed;
    probed.app();
    for (const auto& each : earlier) {
        ASSERT_FALSE(each.expired()) << "to let go of it is to wait for its posts";
        EXPECT_NE(g_telemetry.get(), each.lock());
        EXPECT_EQ(each.lock()->notes().back(), "request stop") << "nobody waits for its last post";
    }
    probed.app().OnShutdown();
    for (const auto& each : earlier) EXPECT_EQ(each.lock()->notes().back(), "stop");
    probed.release();
    EXPECT_EQ(g_telemetry.get(), nullptr);
}

struct UpdateCase {
    const char* what;
    const wchar_t* thick = L"no";
    const char* settings = "";
    std::optional<std::wstring> newer = L"https://x/new.exe";
    bool cancelled = false;   ///< while the service is asked
    HRESULT accepted = S_OK;  ///< by the engine
    bool asks = true;
    const char* version = installerVersion;
    bool updates = true;
};

TEST(SelfUpdate, IsAskedForAndTakenByItsRule) {
    const UpdateCase cases[] = {
        {.what = "newer"},
        {.what = "not newer", .newer = std::nullopt, .updates = false},
        {.what = "thick", .thick = L"yes", .asks = false, .updates = false},
        {.what = "forbidden", .settings = "[qa]\ninstaller.skipUpdateCheck = true\n", .asks = false, .updates = false},
        {.what = "as another version",
         .settings = "[qa]\ncurrentVersion = '1.0.0.0'\nversionToOverride = ''\n",
         .version = "1.0.0.0"},
        {.what = "refused by the engine", .accepted = E_FAIL},
        {.what = "cancelled meanwhile", .cancelled = true},
    };
    for (const UpdateCase& row : cases) {
        SCOPED_TRACE(row.what);
        ProbedRun probed;
        probed.engine.variables.set(L"IsThickInstaller", std::wstring(row.thick));
        probed.engine.answers.setUpdate = row.accepted;
        App& app = probed.app();
        if (*row.settings) {
            std::istringstream settings(row.settings);
            g_config.set(std::make_shared<ConfigMap>(LoadConfigStream(settings)));  // after the constructor's own
        }
        probed.world.newer = row.newer;
        if (row.cancelled) probed.world.onUpdateAsked = [&] { app.PromptCancel(nullptr, TRUE, nullptr, nullptr); };
        app.OnStartup();
        EXPECT_EQ(app.OnDetectUpdateBegin(L"feed", 7), row.cancelled ? IDCANCEL : 7);
        EXPECT_EQ(probed.world.updatesAsked, row.asks ? Texts{row.version} : Texts{});
        EXPECT_EQ(probed.ui.names(), row.asks ? Texts{"showUpdateCheck"} : Texts{});
        EXPECT_THAT(
            probed.engine.callTexts("SetUpdate"),
            ElementsAreArray(row.updates ? Texts{"SetUpdate(null, https://x/new.exe, 0, 0, null, 0)"} : Texts{}));
        const bool taken = row.updates && SUCCEEDED(row.accepted);
        EXPECT_EQ(app.action(), taken ? BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED : install);
        const Handle mutex(OpenMutexW(SYNCHRONIZE, FALSE, L"Global\\Palisade_Desktop_Installer"));
        EXPECT_EQ(mutex.get() == nullptr, taken) << "the newer installer needs it";
        const auto refusal = probed.engine.findLog(L"The engine refuses the update https://x/new.exe: ");
        EXPECT_EQ(refusal && refusal->level == BOOTSTRAPPER_LOG_LEVEL_ERROR, FAILED(row.accepted));
        app.OnShutdown();
    }
}

}  // namespace
}  // namespace pdx
