// The events of a run, in order, the life of telemetry around them, and the check for a newer installer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
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
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

constexpr auto failed = static_cast<HRESULT>(0xa7ff0643);  // the system has no text for it
constexpr auto install = BOOTSTRAPPER_ACTION_INSTALL;

/// What a step reports.
Texts reportsOf(ProbedRun& probed, const std::function<void(App& app)>& step) {
    const auto before = static_cast<ptrdiff_t>(probed.reported().size());
    step(probed.app());
    const Texts reported = probed.reported();
    return {reported.begin() + before, reported.end()};
}

TEST(RunTelemetry, AnErrorIsReportedWithTheMachinesRuntimes) {
    ProbedRun probed;
    for (const wchar_t* runtime : {L"10X86", L"11X86", L"12X86", L"14X86", L"14X64"})
        probed.engine.variables.set(std::wstring(L"VCRedist") + runtime + L"InstalledVer", std::wstring(runtime));
    const Texts reported = reportsOf(probed, [](App& app) { app.OnExecuteComplete(failed); });
    ASSERT_EQ(reported.size(), 2u);
    EXPECT_THAT(reported[0], HasSubstr(R"("status":"error","status_code":"a7ff0643"})"));
    EXPECT_EQ(reported[1],
              R"(brisk inst.inst.erro {"ecod":"a7ff0643","ectx":{"stat":"a7ff0643"},"einv":true,"emsg":"unknown",)"
              R"("eopr":43,"estr":"a7ff0643","vc10x86ver":"10X86","vc11x86ver":"11X86","vc12x86ver":"12X86",)"
              R"("vc14x64ver":"14X64","vc14x86ver":"14X86"})");
}

TEST(RunTelemetry, CopiesSuccessesCancelsAndReloadsReportNothing) {
    ProbedRun probed;
    const auto steps = [](App& app) {
        app.OnCacheAcquireBegin(L"p", L"l", BOOTSTRAPPER_CACHE_OPERATION_COPY, L"s");
        app.OnCacheAcquireProgress(L"p", L"l", 1, 2, 3);
        app.OnCacheAcquireComplete(L"p", L"l", failed, 0);
        app.OnCacheVerifyComplete(L"p", L"l", failed, 0);
        app.OnExecuteComplete(S_OK);
        app.OnExecuteComplete(hresultFromWin32(userExitCode));
        app.PromptCancel(nullptr, TRUE, nullptr, nullptr);
        app.OnExecuteComplete(failed);
        app.requestRepair();
        EXPECT_EQ(app.OnShutdown(), resultReloadBootstrapper);
        SetEnvironmentVariableW(L"PDX_REPAIR", nullptr);
    };
    EXPECT_THAT(reportsOf(probed, steps), IsEmpty());
    ProbedRun uninstall(BOOTSTRAPPER_ACTION_UNINSTALL);
    const auto olderClientRemoved = [](App& app) {
        app.OnExecuteMsiMessage(L"p", 0, 0, L"CA_MSG_BASTION_UNINSTALL_SUCCESS", 0, nullptr, 0);
    };
    EXPECT_THAT(reportsOf(uninstall, olderClientRemoved), IsEmpty());
}

TEST(RunTelemetry, SendsTheReportsIdAfterTheReport) {
    const std::pair<HRESULT, const char*> cases[] = {{hresultFromWin32(userExitCode), "inst.inst.canc"},
                                                     {failed, "inst.inst.fail"}};
    for (const auto& [status, event] : cases) {
        ProbedRun probed;
        probed.engine.variables.set(L"PDX_SUBMIT_ERROR_REPORT", std::wstring(L"1"));
        probed.world.report = [&, &name = event](const ReportFiles&) {
            EXPECT_TRUE(probed.attributes(name).is_null()) << name;
            return std::string("er-1");
        };
        probed.app().UpdateInstallStatus(status);
        probed.app().OnShutdown();
        EXPECT_EQ(probed.attributes(event)["report_id"], "er-1");
    }
}

TEST(RunTelemetry, IsEnabledAtTheStartOnlyIfTheRunAsksNothing) {
    const struct {
        const wchar_t* variable;
        const wchar_t* value;
        bool olderClient, enabled;
    } rows[] = {
        {.variable = L"KESTREL_AUTHCODE", .value = L"code", .olderClient = true, .enabled = true},
        {.variable = L"KESTREL_AUTHCODE", .value = L"code", .olderClient = false, .enabled = false},
        {.variable = L"KESTREL_AUTHCODE", .value = L"", .olderClient = true, .enabled = false},
        {.variable = L"PDX_REPAIR", .value = L"1", .olderClient = false, .enabled = true},
        {.variable = L"PDX_MERIDIAN_MODE", .value = L"1", .olderClient = false, .enabled = true},
    };
    RegistryKey machine = RegistryKey::localMachine(view32);
    for (const auto& row : rows) {
        SCOPED_TRACE(toUtf8(row.variable));
        if (row.olderClient) machine.setSubKeyValue(bastionKey, L"InstallSuccesfull", std::wstring(L"1"));
        ProbedRun probed;
        probed.engine.variables.set(row.variable, std::wstring(row.value));
        probed.app().OnStartup();
        const Texts reported = probed.reported();
        EXPECT_EQ(std::ranges::count(reported, "enable"), row.enabled ? 1 : 0);
        EXPECT_TRUE(!row.enabled || reported.at(2) == "enable") << "before the first step's events";
        machine.deleteTree(bastionKey);
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
    EXPECT_EQ(g_telemetry.get(), telemetry) << "it outlives its object";
    EXPECT_EQ(probed.engine.references(), 0u);
    EXPECT_EQ(g_logger.get(), nullptr) << "its workers find no engine to log to";
    return telemetry;
}

TEST(RunTelemetry, KeepsEarlierManagersUntilTheLastShutdown) {
    const std::weak_ptr<RecordingTelemetry> earlier[] = {reload(), reload()};
    ProbedRun probed;
    probed.app();
    for (const auto& each : earlier) {
        ASSERT_FALSE(each.expired()) << "its destructor would wait for its posts";
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

TEST(SelfUpdate, ANewerInstallerReplacesAThinRun) {
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
