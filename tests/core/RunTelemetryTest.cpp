// What each callback tells of the run, whom and in which order; and the life of telemetry around it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "config/Settings.h"
#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/Registry.h"
#include "platform/RegistryPaths.h"
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
constexpr auto uninstall = BOOTSTRAPPER_ACTION_UNINSTALL;
constexpr auto fetch = BOOTSTRAPPER_CACHE_OPERATION_DOWNLOAD;

/// Attributes of every error: code, context, number of the callback, text.
std::string errorTail(const char* context, int operation, const char* text = "a7ff0643") {
    return std::string(R"("ecod":"a7ff0643","ectx":)") + context + R"(,"einv":true,"emsg":"unknown","eopr":)" +
           std::to_string(operation) + R"(,"estr":")" + text + R"(",<runtimes>})";
}

/// The context of an acquire that ended with the failure.
constexpr const char* acquired = R"({"caop":1,"cast":"a7ff0643","pkid":"p","plid":"l","psrc":"https://x/a","reco":0})";

struct Row {
    const char* what;
    BOOTSTRAPPER_ACTION action;
    std::function<void(App&)> call;
    Texts told = {};  ///< behind what is told when the application is made
    int extra = 0;    ///< the two below
};
constexpr int repair = 1;
constexpr int ends = 2;  ///< by OnShutdown, which tells the end of the session behind all others

template <typename... Text>
Texts lines(const Text&... texts) {
    return {texts...};
}

void setVariable(App& app, const wchar_t* name, const wchar_t* value) { app.engine()->SetVariableString(name, value); }

void beginDownload(App& app) { app.OnCacheAcquireBegin(L"p", L"l", fetch, L"https://x/a"); }

const std::string downloadBegun[] = {
    R"(tally download {"download_id":<id>,"item_platform":"pc","percent":0,"status":"start","status_code":"new"})",
    R"(brisk inst.dnld.strt {"byte":0,"link":"https://x/a","strt":<time>,"stst":"new"})",
};
const std::string downloadBroken =
    R"(tally download {"download_id":<id>,"item_platform":"pc","status":"error","status_code":"a7ff0643"})";

const Row rows[] = {
    {"a copy is no download", install,
     [](App& a) {
         a.OnCacheAcquireBegin(L"p", L"l", BOOTSTRAPPER_CACHE_OPERATION_COPY, L"s");
         a.OnCacheAcquireProgress(L"p", L"l", 1, 2, 3);
         a.OnCacheAcquireComplete(L"p", L"l", failed, 0);
         a.OnCacheVerifyComplete(L"p", L"l", failed, 0);
     }},
    {"a download succeeds", install,
     [](App& a) {
         beginDownload(a);
         a.OnCacheAcquireProgress(L"p", L"l", 300, 400, 3);
         a.OnCacheAcquireComplete(L"p", L"l", S_OK, 0);
         a.OnCacheVerifyComplete(L"p", L"l", S_OK, 0);
     },
     lines(
         downloadBegun[0], downloadBegun[1],
         R"(tally download {"download_id":<id>,"item_platform":"pc","percent":75.0,"status":"finish","status_code":"success"})",
         R"(brisk inst.dnld.succ {"byte":400,"endt":<time>,"enst":"success","link":"https://x/a","pct":"75.0000","strt":<time>,"stst":"new"})")},
    {"a download in a repair", install,
     [](App& a) {
         beginDownload(a);
         a.OnCacheAcquireProgress(L"p", L"l", 4, 4, 3);
         a.OnCacheAcquireComplete(L"p", L"l", S_OK, 0);
     },
     lines(
         R"(tally download {"download_id":<id>,"item_platform":"pc","percent":0,"status":"start","status_code":"repair"})",
         R"(brisk inst.dnld.strt {"byte":0,"link":"https://x/a","strt":<time>,"stst":"repair"})",
         R"(tally download {"download_id":<id>,"item_platform":"pc","percent":100.0,"status":"finish","status_code":"success"})",
         R"(brisk inst.dnld.succ {"byte":4,"endt":<time>,"enst":"success","link":"https://x/a","pct":"100.0000","strt":<time>,"stst":"repair"})"),
     repair},
    {"a download fails and is retried", install,
     [](App& a) {
         beginDownload(a);
         a.OnCacheAcquireComplete(L"p", L"l", failed, 0);
     },
     lines(downloadBegun[0], downloadBegun[1], downloadBroken,
           R"(brisk inst.dnld.erro {"auto_retry":"true",)" + errorTail(acquired, 34))},
    {"a download turns out to be bad", install,
     [](App& a) {
         beginDownload(a);
         a.OnCacheVerifyBegin(L"p", L"l");
         a.OnCacheVerifyComplete(L"p", L"l", failed, 0);
     },
     lines(downloadBegun[0], downloadBegun[1], downloadBroken,
           R"(brisk inst.dnld.erro {)" + errorTail(R"({"pkid":"p","plid":"l","reco":0,"stat":"a7ff0643"})", 36))},
    {"execution begins in an uninstall", uninstall, [](App& a) { a.OnExecuteBegin(1); },
     lines(R"(tally uninstall {"status":"start","uninstallation_type":"kestrel_client"})",
           R"(brisk inst.uinst.strt {"path":"default","uitm":<time>})")},
    {"execution begins in an uninstall from elsewhere", uninstall,
     [](App& a) {
         setVariable(a, L"InstallFolder", L"D:\\P");
         a.OnExecuteBegin(1);
     },
     lines(R"(tally uninstall {"status":"start","uninstallation_type":"kestrel_client"})",
           R"(brisk inst.uinst.strt {"path":"custom","uitm":<time>})")},
    {"an error", install,
     [](App& a) {
         a.OnElevate();
         a.OnError(PALISADE_ERROR_TYPE, L"p", 1603, L"lone \xD800", 0, 0, nullptr, 0);
     },
     lines(R"(tally install {"status":"error","status_code":"a7ff0643"})",
           R"(brisk inst.inst.erro {)" + errorTail("{}", 27, "lone \xEF\xBF\xBD"))},
    {"an error in an uninstall", uninstall,
     [](App& a) {
         a.OnElevate();
         a.OnError(PALISADE_ERROR_TYPE, L"p", 1603, nullptr, 0, 0, nullptr, 0);
     },
     lines(R"(tally uninstall {"status":"error","status_code":"a7ff0643"})",
           R"(brisk inst.uinst.erro {)" + errorTail("{}", 27, ""))},
    {"execution succeeds", install, [](App& a) { a.OnExecuteComplete(S_OK); }},
    {"execution is cancelled", install, [](App& a) { a.OnExecuteComplete(hresultFromWin32(userExitCode)); }},
    {"execution fails", install, [](App& a) { a.OnExecuteComplete(failed); },
     lines(R"(tally install {"installation_type":"kestrel_client","status":"error","status_code":"a7ff0643"})",
           R"(brisk inst.inst.erro {)" + errorTail(R"({"stat":"a7ff0643"})", 43))},
    {"execution fails in an uninstall", uninstall, [](App& a) { a.OnExecuteComplete(failed); },
     lines(R"(tally uninstall {"status":"error","status_code":"a7ff0643","uninstallation_type":"kestrel_client"})",
           R"(brisk inst.uinst.erro {)" + errorTail(R"({"stat":"a7ff0643"})", 43))},
    {"execution fails with another code after a cancel", install,
     [](App& a) {
         a.PromptCancel(nullptr, TRUE, nullptr, nullptr);
         a.OnExecuteComplete(failed);
     }},
    {"an error with the machine's runtimes", install,
     [](App& a) {
         setVariable(a, L"VCRedist10X86InstalledVer", L"10.32");
         setVariable(a, L"VCRedist11X86InstalledVer", L"11.32");
         setVariable(a, L"VCRedist12X86InstalledVer", L"12.32");
         setVariable(a, L"VCRedist14X86InstalledVer", L"14.32");
         setVariable(a, L"VCRedist14X64InstalledVer", L"14.64");
         a.OnExecuteComplete(failed);
     },
     lines(
         R"(tally install {"installation_type":"kestrel_client","status":"error","status_code":"a7ff0643"})",
         R"(brisk inst.inst.erro {"ecod":"a7ff0643","ectx":{"stat":"a7ff0643"},"einv":true,"emsg":"unknown","eopr":43,)"
         R"("estr":"a7ff0643","vc10x86ver":"10.32","vc11x86ver":"11.32","vc12x86ver":"12.32","vc14x64ver":"14.64",)"
         R"("vc14x86ver":"14.32"})")},
    {"the older client is gone", install,
     [](App& a) { a.OnExecuteMsiMessage(L"p", 0, 0, L"CA_MSG_BASTION_UNINSTALL_SUCCESS", 0, nullptr, 0); },
     lines(
         R"(tally message {"destination_name":"meridian_complete","msg_id":"meridian_completed_uninstall","pgid":"progress",)"
         R"("service":"sable","status":"impression","track":{"environment":"","target_games_in_collection":[],)"
         R"("target_min_hours_played":[],"target_subs":"","target_traffic_rules":"","trackingtag":"cohort"},)"
         R"("type":"in_service"})")},
    {"the older client goes in an uninstall", uninstall,
     [](App& a) { a.OnExecuteMsiMessage(L"p", 0, 0, L"CA_MSG_BASTION_UNINSTALL_SUCCESS", 0, nullptr, 0); }},
    {"a run succeeds", install, [](App&) {},
     lines(R"(tally install {"installation_type":"kestrel_client","status":"finish","status_code":"success"})",
           R"(brisk inst.inst.succ {"endt":<time>,"enst":"success","strt":<time>,"stst":"new"})"),
     ends},
    {"an uninstall succeeds", uninstall, [](App&) {},
     lines(R"(tally uninstall {"status":"finish","status_code":"success","uninstallation_type":"kestrel_client"})",
           R"(brisk inst.uinst.succ {"endt":<time>,"enst":"success","strt":<time>,"stst":"new"})"),
     ends},
    {"an uninstall fails", uninstall,
     [](App& a) {
         a.OnRegisterBegin();
         a.OnRegisterComplete(failed);
     },
     lines(R"(tally uninstall {"status":"error","status_code":"a7ff0643","uninstallation_type":"kestrel_client"})",
           R"(brisk inst.uinst.fail {)" + errorTail(R"({"stat":"a7ff0643"})", 29)),
     ends},
    {"a repair fails", install,
     [](App& a) {
         a.OnExecuteBegin(1);
         a.OnExecuteComplete(failed);
     },
     lines(R"(tally install {"installation_type":"kestrel_client","status":"start","status_code":"repair"})",
           R"(brisk inst.inst.strt {"dskm":"","dtyp":"system","inst":"repair","intm":<time>,"path":"default"})",
           R"(tally install {"installation_type":"kestrel_client","status":"error","status_code":"a7ff0643"})",
           R"(brisk inst.repr.erro {)" + errorTail(R"({"npkg":1,"stat":"a7ff0643"})", 43),
           R"(tally install {"installation_type":"kestrel_client","status":"error","status_code":"a7ff0643"})",
           R"(brisk inst.repr.fail {)" + errorTail(R"({"npkg":1,"stat":"a7ff0643"})", 43)),
     repair | ends},
    {"a repair is cancelled", install, [](App& a) { a.UpdateInstallStatus(hresultFromWin32(userExitCode)); },
     lines(R"(tally install {"installation_type":"kestrel_client","status":"cancel","status_code":"user_action"})",
           R"(brisk inst.repr.canc {"cnst":"user_action"})"),
     repair | ends},
    {"an uninstall is cancelled", uninstall, [](App& a) { a.UpdateInstallStatus(hresultFromWin32(userExitCode)); },
     lines(R"(tally uninstall {"status":"cancel","status_code":"user_action","uninstallation_type":"kestrel_client"})",
           R"(brisk inst.uinst.canc {"cnst":"user_action"})"),
     ends},
    {"the session ends under a run", install,
     [](App& a) {
         a.noteLogoutExit();
         a.UpdateInstallStatus(hresultFromWin32(userExitCode));
     },
     lines(R"(tally install {"installation_type":"kestrel_client","status":"cancel","status_code":"logout_exit"})",
           R"(brisk inst.inst.canc {"cnst":"logout_exit"})"),
     ends},
    {"a run fails, and tells the callback of the error", install,
     [](App& a) {
         a.OnRegisterBegin();
         a.OnRegisterComplete(failed);
         a.OnExecuteBegin(1);
         a.OnApplyComplete(hresultFromWin32(genericFailureCode), BOOTSTRAPPER_APPLY_RESTART_NONE);
     },
     lines(R"(tally install {"installation_type":"kestrel_client","status":"start","status_code":"new"})",
           R"(brisk inst.inst.strt {"dskm":"","dtyp":"system","inst":"new","intm":<time>,"path":"default"})",
           R"(tally install {"installation_type":"kestrel_client","status":"error","status_code":"a7ff0643"})",
           R"(brisk inst.inst.fail {)" + errorTail(R"({"stat":"a7ff0643"})", 29)),
     ends},
    {"a reload tells nothing and stops nothing", install,
     [](App& a) {
         a.requestRepairReload();
         EXPECT_EQ(a.OnShutdown(), resultReloadBootstrapper);
         SetEnvironmentVariableW(L"PDX_REPAIR", nullptr);
     }},
};

TEST(RunTelemetry, TellsWhatTheCatalogueHasForEachCallback) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        Bench bench(row.action);
        if (row.extra & repair) bench.engine.variables.set(L"PDX_REPAIR", std::wstring(L"1"));
        bench.engine.variables.set(L"PDX_MERIDIAN_COHORT", std::wstring(L"cohort"));
        bench.engine.variables.set(L"InstallFolder", std::wstring(L"C:\\P"));
        bench.engine.variables.set(L"DefaultInstallFolder", std::wstring(L"C:\\P"));
        const size_t before = bench.told().size();
        row.call(bench.app());
        Texts wanted = row.told;
        if (row.extra & ends) {
            bench.app().OnShutdown();
            for (const char* last : {"brisk inst.sess.stop {}", "request stop", "stop"}) wanted.emplace_back(last);
        }
        Texts told = bench.told();
        told.erase(told.begin(), told.begin() + before);
        EXPECT_THAT(told, ElementsAreArray(wanted));
    }
}

TEST(RunTelemetry, TellsWhenARunAndADownloadBeganAndEnded) {
    const auto letTimePass = [] {
        const std::string now = TelemetryManager::timestamp(briskSender);
        while (TelemetryManager::timestamp(briskSender) == now) continue;
    };
    Bench bench;
    bench.app();
    letTimePass();
    beginDownload(bench.app());
    letTimePass();
    bench.app().OnCacheAcquireComplete(L"p", L"l", S_OK, 0);
    letTimePass();
    bench.app().OnShutdown();
    const nlohmann::json download = bench.attributes("inst.dnld.succ");
    const nlohmann::json run = bench.attributes("inst.inst.succ");
    EXPECT_EQ(bench.attributes("inst.dnld.strt")["strt"], download["strt"]);
    EXPECT_LT(run["strt"], download["strt"]);
    EXPECT_LT(download["strt"], download["endt"]);
    EXPECT_LT(download["endt"], run["endt"]);
}

TEST(RunTelemetry, OpensTheSessionWithWhatIsKnownOfIt) {
    const std::tuple<const wchar_t*, BOOTSTRAPPER_RELATION_TYPE, const char*> cases[] = {
        {L"", BOOTSTRAPPER_RELATION_NONE,
         R"("harrier":"h","ignore_installed":"1","launch":"yes","repair":"0","with_authcode":false})"},
        {L"code", BOOTSTRAPPER_RELATION_UPDATE,
         R"("harrier":"h","ignore_installed":"1","launch":"yes","repair":"0","with_authcode":true})"},
    };
    for (const auto& [authcode, relation, told] : cases) {
        Bench bench;
        bench.command.relationType = relation;
        for (const auto& [name, value] :
             {std::pair{L"HARRIER_ENABLE", L"h"}, {L"IGNORE_ALREADY_INSTALLED", L"1"}, {L"PDX_LAUNCH_CLIENT", L"yes"}})
            bench.engine.variables.set(name, std::wstring(value));
        bench.engine.variables.set(L"KESTREL_AUTHCODE", std::wstring(authcode));
        const std::string autopatch = relation == BOOTSTRAPPER_RELATION_UPDATE ? "true" : "false";
        // Under Wine every process has raised rights.
        EXPECT_THAT(bench.told(),
                    ElementsAreArray({std::string("start"), R"(brisk inst.sess.strt {"action":5,"autopatch":)" +
                                                                autopatch + R"(,"boot":<time>,"cmd":<text>,)" +
                                                                R"("elevated":true,)" + told}));
    }
}

TEST(RunTelemetry, TellsARepairThatTheUninstallEntryAskedForAsAnInstall) {
    Bench bench(uninstall);
    bench.engine.variables.set(L"PDX_REPAIR", std::wstring(L"1"));
    EXPECT_THAT(bench.told()[1], HasSubstr(R"("action":5)"));
    EXPECT_THAT(bench.told()[1], HasSubstr(R"("repair":"1")"));
    bench.app().OnShutdown();
    EXPECT_THAT(bench.told()[2], HasSubstr("tally install"));
    EXPECT_THAT(bench.told()[3], HasSubstr("brisk inst.repr.succ"));
    EXPECT_THAT(bench.told()[3], HasSubstr(R"("stst":"repair")"));
}

TEST(RunTelemetry, GoesOutAtOnceForARunThatAsksNobody) {
    // enabledAt: position among what is told by the end of OnStartup; 0: not enabled
    const std::tuple<const wchar_t*, const wchar_t*, bool, size_t> cases[] = {
        {L"KESTREL_AUTHCODE", L"code", true, 2}, {L"KESTREL_AUTHCODE", L"code", false, 0},
        {L"KESTREL_AUTHCODE", L"", true, 0},     {L"PDX_REPAIR", L"1", false, 2},
        {L"PDX_MERIDIAN_MODE", L"1", false, 2},
    };
    for (const auto& [variable, value, olderClient, enabledAt] : cases) {
        SCOPED_TRACE(toUtf8(variable));
        if (olderClient)
            RegistryKey::localMachine(view32).setSubKeyValue(olderClientKey, L"InstallSuccesfull", std::wstring(L"1"));
        AnsweringDialog dialog;
        Bench bench;
        bench.engine.variables.set(variable, std::wstring(value));
        bench.app().OnStartup();
        const Texts told = bench.told();
        for (size_t i = 1; i < told.size(); ++i) EXPECT_EQ(told[i] == "enable", i == enabledAt) << i;
        EXPECT_EQ(told.size(), enabledAt ? 3u : 2u);
        RegDeleteTreeW(RegistryKey::localMachine(view32).createSubKey(L"Software", true).get(), L"Bastion");
    }
}

TEST(RunTelemetry, TellsEachAttemptOfADownloadAsOneOfItsOwn) {
    AnsweringDialog dialog(
        [](BootstrapperApplication& application, const AnsweringDialog::Message& message) -> LRESULT {
            if (message.number == WM_BA_CACHE_ACQUIRE_COMPLETE && static_cast<HRESULT>(message.wparam) < 0)
                return IDCANCEL;
            return AnsweringDialog::driveOn(application, message);
        });
    Bench bench;
    EngineScript script;
    script.packages[0].payloads[0].source = PayloadSource::download;
    script.packages[0].payloads[0].acquire = {failed, failed, failed, failed};
    bench.run(script);
    Texts downloads;
    for (const std::string& text : bench.told())
        if (text.starts_with("brisk inst.dnld.") || text.starts_with("tally download "))
            downloads.push_back(text.substr(0, text.find('{')) +
                                (text.find(R"("auto_retry":"true")") != std::string::npos    ? "again"
                                 : text.find(R"("auto_retry":"false")") != std::string::npos ? "over"
                                                                                             : ""));
    Texts wanted;
    for (const char* end : {"again", "again", "again", "over"})
        for (const char* text :
             {"tally download ", "brisk inst.dnld.strt ", "tally download ", "brisk inst.dnld.erro "})
            wanted.push_back(std::string(text) + (std::string(text).ends_with("erro ") ? end : ""));
    EXPECT_THAT(downloads, ElementsAreArray(wanted));
}

TEST(RunTelemetry, TellsACancelledDownloadOnceAndNothingOfTheWaitBeforeARetry) {
    Bench bench;
    App& app = bench.app();
    beginDownload(app);
    size_t before = 0;
    bench.world.onPause = [&] {
        before = bench.told().size();
        app.PromptCancel(nullptr, TRUE, nullptr, nullptr);
        bench.world.onPause = {};
    };
    EXPECT_EQ(app.OnCacheAcquireComplete(L"p", L"l", failed, 0), IDCANCEL);
    EXPECT_EQ(bench.told().size(), before);
    // A transfer that is cut, and one that was complete at the moment of the cancel.
    for (const HRESULT hr : {HRESULT{hresultFromWin32(userExitCode)}, HRESULT{S_OK}}) {
        before = bench.told().size();
        EXPECT_EQ(app.OnCacheAcquireComplete(L"p", L"l", hr, 0), IDCANCEL);
        const Texts told = bench.told();
        ASSERT_EQ(told.size(), before + 2);
        EXPECT_THAT(told[before], HasSubstr(R"("status":"cancel","status_code":"user_)"));
        EXPECT_THAT(told[before + 1], HasSubstr(R"(brisk inst.dnld.canc {"cnst":"user_)"));
    }
}

TEST(RunTelemetry, TellsAWholeRunInOrder) {
    AnsweringDialog dialog(AnsweringDialog::driveOn);
    Bench bench;
    EngineScript script;
    script.packages[0].payloads[0].source = PayloadSource::download;
    bench.run(script);
    Texts names;
    for (const std::string& text : bench.told()) names.push_back(text.substr(0, text.find(" {")));
    EXPECT_THAT(names, ElementsAreArray({"start", "brisk inst.sess.strt", "tally download", "brisk inst.dnld.strt",
                                         "tally download", "brisk inst.dnld.succ", "tally install",
                                         "brisk inst.inst.strt", "tally install", "brisk inst.inst.succ",
                                         "brisk inst.sess.stop", "request stop", "stop"}));
    const auto dialogNumbers = dialog.numbers();
    EXPECT_EQ(std::count(dialogNumbers.begin(), dialogNumbers.end(), UINT{WM_BA_DETECT_UPDATE_BEGIN}), 0);
}

/// An object that asks for a reload, to its last reference.
std::weak_ptr<RecordingTelemetry> reload() {
    Bench bench;
    bench.app().requestRepairReload();
    bench.app().OnShutdown();
    const auto telemetry = std::static_pointer_cast<RecordingTelemetry>(g_telemetry.get());
    bench.release();
    SetEnvironmentVariableW(L"PDX_REPAIR", nullptr);
    EXPECT_EQ(g_telemetry.get(), telemetry) << "it goes on without an object";
    EXPECT_EQ(bench.engine.references(), 0u);
    EXPECT_EQ(g_logger.get(), nullptr) << "its workers find no engine to log to";
    return telemetry;
}

TEST(RunTelemetry, IsHandedOnOverEveryReload) {
    const std::weak_ptr<RecordingTelemetry> earlier[] = {reload(), reload()};
    Bench bench;
    bench.app();
    for (const auto& each : earlier) {
        ASSERT_FALSE(each.expired()) << "to let go of it is to wait for its posts";
        EXPECT_NE(g_telemetry.get(), each.lock());
        EXPECT_EQ(each.lock()->notes().back(), "request stop") << "nobody waits for its last post";
    }
    bench.app().OnShutdown();
    for (const auto& each : earlier) EXPECT_EQ(each.lock()->notes().back(), "stop");
    bench.release();
    EXPECT_EQ(g_telemetry.get(), nullptr);
}

struct UpdateCase {
    const char* what;
    BOOTSTRAPPER_ACTION action = install;
    BOOTSTRAPPER_RELATION_TYPE relation = BOOTSTRAPPER_RELATION_NONE;
    const wchar_t* thick = L"no";
    const wchar_t* repair = L"0";
    const char* settings = "";
    std::optional<std::wstring> newer = L"https://x/new.exe";
    bool cancelled = false;   ///< while the service is asked
    HRESULT accepted = S_OK;  ///< by the engine
    bool asks = true;
    const char* version = "12.37.0.5294";
    bool updates = true;
};

TEST(SelfUpdate, IsAskedForAndTakenByItsRule) {
    const UpdateCase cases[] = {
        {.what = "newer"},
        {.what = "not newer", .newer = std::nullopt, .updates = false},
        {.what = "uninstall", .action = uninstall, .asks = false, .updates = false},
        {.what = "an update itself", .relation = BOOTSTRAPPER_RELATION_UPDATE, .asks = false, .updates = false},
        {.what = "thick", .thick = L"yes", .asks = false, .updates = false},
        {.what = "forbidden", .settings = "[qa]\ninstaller.skipUpdateCheck = true\n", .asks = false, .updates = false},
        {.what = "as another version",
         .settings = "[qa]\ncurrentVersion = '1.0.0.0'\nversionToOverride = ''\n",
         .version = "1.0.0.0"},
        {.what = "refused by the engine", .accepted = E_FAIL},
        {.what = "cancelled meanwhile", .cancelled = true},
        {.what = "a repair", .repair = L"1"},
    };
    for (const UpdateCase& row : cases) {
        SCOPED_TRACE(row.what);
        AnsweringDialog dialog;
        Bench bench(row.action);
        bench.command.relationType = row.relation;
        bench.engine.variables.set(L"IsThickInstaller", std::wstring(row.thick));
        bench.engine.variables.set(L"PDX_REPAIR", std::wstring(row.repair));
        bench.engine.answers.setUpdate = row.accepted;
        App& app = bench.app();
        if (*row.settings) {
            std::istringstream settings(row.settings);
            g_config.set(std::make_shared<ConfigMap>(LoadConfigStream(settings)));  // behind the constructor's own
        }
        bench.world.newer = row.newer;
        if (row.cancelled) bench.world.onUpdateAsked = [&] { app.PromptCancel(nullptr, TRUE, nullptr, nullptr); };
        app.OnStartup();
        EXPECT_EQ(app.OnDetectUpdateBegin(L"feed", 7), row.cancelled ? IDCANCEL : 7);
        EXPECT_EQ(bench.world.updatesAsked, row.asks ? Texts{row.version} : Texts{});
        EXPECT_EQ(dialog.numbers(), row.asks ? std::vector<UINT>{WM_BA_DETECT_UPDATE_BEGIN} : std::vector<UINT>{});
        EXPECT_THAT(
            bench.engine.callTexts("SetUpdate"),
            ElementsAreArray(row.updates ? Texts{"SetUpdate(null, https://x/new.exe, 0, 0, null, 0)"} : Texts{}));
        const bool taken = row.updates && SUCCEEDED(row.accepted);
        EXPECT_EQ(app.action(), taken ? BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED : row.action);
        const Handle mutex(OpenMutexW(SYNCHRONIZE, FALSE, L"Global\\Palisade_Desktop_Installer"));
        EXPECT_EQ(mutex.get() == nullptr, taken) << "the newer installer needs it";
        const auto refusal = bench.engine.findLog(L"The engine refuses the update https://x/new.exe: ");
        EXPECT_EQ(refusal && refusal->level == BOOTSTRAPPER_LOG_LEVEL_ERROR, FAILED(row.accepted));
        app.OnShutdown();
    }
}

}  // namespace
}  // namespace pdx
