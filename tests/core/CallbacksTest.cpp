// Every callback against its row: the number it leaves, the line it logs, what it makes of the context.
#include <gtest/gtest.h>

#include <exception>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

#include "platform/Text.h"
#include "tests/core/ApplicationProbe.h"
#include "tests/platform/Crash.h"

namespace pdx {
namespace {

using App = IBootstrapperApplication;
using Json = nlohmann::json;

constexpr auto failed = static_cast<HRESULT>(0xa7ff0643);  // the system has no text for it
constexpr DWORD64 version = 0x0001000200030004;
constexpr int reco = 7;

enum Rule { replace, merge };

struct Row {
    const char* function;
    int number;        ///< 0: the callback leaves the number alone
    const char* line;  ///< null: no line
    Rule rule;
    const char* attributes;  ///< of the context
    std::function<std::optional<int>(App&)> call;
    int result = 0;
};

BOOTSTRAPPER_REQUEST_STATE present = BOOTSTRAPPER_REQUEST_STATE_PRESENT;
BOOTSTRAPPER_FEATURE_STATE local = BOOTSTRAPPER_FEATURE_STATE_LOCAL;
LPCWSTR two[] = {L"one", L"two"};

/// For slots without a result.
template <typename Call>
auto quiet(Call call) {
    return [call](App& app) {
        call(app);
        return std::optional<int>();
    };
}

const Row rows[] = {
    {"OnDetectBegin", 4, "fInstalled=true, cPackages=3", replace, R"({"inst":true,"npkg":3})",
     [](App& a) { return a.OnDetectBegin(TRUE, 3); }},
    {"OnDetectForwardCompatibleBundle", 5,
     "wzBundleId=b, relationType=BOOTSTRAPPER_RELATION_UPGRADE, wzBundleTag=t, fPerMachine=false, "
     "dw64Version=1.2.3.4, nRecommendation=7",
     merge, R"({"bund":"b","relt":2,"btag":"t","perm":false,"vers":"1.2.3.4","reco":7})",
     [](App& a) {
         return a.OnDetectForwardCompatibleBundle(L"b", BOOTSTRAPPER_RELATION_UPGRADE, L"t", FALSE, version, reco);
     },
     reco},
    {"OnDetectUpdateBegin", 6, "wzUpdateLocation=l, nRecommendation=7", replace, R"({"locn":"l","reco":7})",
     [](App& a) { return a.OnDetectUpdateBegin(L"l", reco); }, reco},
    {"OnDetectUpdate", 7,
     "wzUpdateLocation=l, dw64Size=5000000000, dw64Version=1.2.3.4, wzTitle=ti, wzSummary=su, wzContentType=ty, "
     "wzContent=co, nRecommendation=7",
     merge,
     R"({"locn":"l","size":5000000000,"vers":"1.2.3.4","titl":"ti","summ":"su","type":"ty","cont":"co","reco":7})",
     [](App& a) { return a.OnDetectUpdate(L"l", 5000000000, version, L"ti", L"su", L"ty", L"co", reco); }, reco},
    {"OnDetectUpdateComplete", 8, "hrStatus=a7ff0643, wzUpdateLocation=l", merge, R"({"stat":"a7ff0643","locn":"l"})",
     quiet([](App& a) { a.OnDetectUpdateComplete(failed, L"l"); })},
    {"OnDetectRelatedBundle", 9,
     "wzBundleId=b, relationType=BOOTSTRAPPER_RELATION_UPDATE, wzBundleTag=t, fPerMachine=true, dw64Version=1.2.3.4, "
     "operation=BOOTSTRAPPER_RELATED_OPERATION_MAJOR_UPGRADE",
     merge, R"({"bund":"b","relt":6,"btag":"t","perm":true,"vers":"1.2.3.4","oper":3})",
     [](App& a) {
         return a.OnDetectRelatedBundle(L"b", BOOTSTRAPPER_RELATION_UPDATE, L"t", TRUE, version,
                                        BOOTSTRAPPER_RELATED_OPERATION_MAJOR_UPGRADE);
     }},
    {"OnDetectPackageBegin", 10, "wzPackageId=p", replace, R"({"pkid":"p"})",
     [](App& a) { return a.OnDetectPackageBegin(L"p"); }},
    {"OnDetectCompatiblePackage", 11, "wzPackageId=p, wzCompatiblePackageId=c", merge, R"({"pkid":"p","cpid":"c"})",
     [](App& a) { return a.OnDetectCompatiblePackage(L"p", L"c"); }},
    {"OnDetectRelatedMsiPackage", 12,
     "wzPackageId=p, wzProductCode=c, fPerMachine=true, dw64Version=1.2.3.4, "
     "operation=BOOTSTRAPPER_RELATED_OPERATION_DOWNGRADE",
     merge, R"({"pkid":"p","pcod":"c","perm":true,"vers":"1.2.3.4","oper":1})",
     [](App& a) {
         return a.OnDetectRelatedMsiPackage(L"p", L"c", TRUE, version, BOOTSTRAPPER_RELATED_OPERATION_DOWNGRADE);
     }},
    {"OnDetectTargetMsiPackage", 13, "wzPackageId=p, wzProductCode=c, patchState=BOOTSTRAPPER_PACKAGE_STATE_PRESENT",
     merge, R"({"pkid":"p","pcod":"c","ptch":4})",
     [](App& a) { return a.OnDetectTargetMsiPackage(L"p", L"c", BOOTSTRAPPER_PACKAGE_STATE_PRESENT); }},
    {"OnDetectMsiFeature", 14, "wzPackageId=p, wzFeatureId=f, state=BOOTSTRAPPER_FEATURE_STATE_LOCAL", merge,
     R"({"pkid":"p","ftid":"f","ftst":3})",
     [](App& a) { return a.OnDetectMsiFeature(L"p", L"f", BOOTSTRAPPER_FEATURE_STATE_LOCAL); }},
    {"OnDetectPackageComplete", 15, "wzPackageId=p, hrStatus=a7ff0643, state=BOOTSTRAPPER_PACKAGE_STATE_CACHED", merge,
     R"({"pkid":"p","pkst":"a7ff0643"})",
     quiet([](App& a) { a.OnDetectPackageComplete(L"p", failed, BOOTSTRAPPER_PACKAGE_STATE_CACHED); })},
    {"OnDetectComplete", 16, "hrStatus=a7ff0643", merge, R"({"stat":"a7ff0643"})",
     quiet([](App& a) { a.OnDetectComplete(failed); })},
    {"OnPlanBegin", 17, "cPackages=2", replace, R"({"npkg":2})", [](App& a) { return a.OnPlanBegin(2); }},
    {"OnPlanRelatedBundle", 18, "wzBundleId=b, pRequestedState=BOOTSTRAPPER_REQUEST_STATE_PRESENT", merge,
     R"({"bund":"b","rqst":4})", [](App& a) { return a.OnPlanRelatedBundle(L"b", &present); }},
    {"OnPlanPackageBegin", 19, "wzPackageId=p, pRequestedState=BOOTSTRAPPER_REQUEST_STATE_PRESENT", replace,
     R"({"pkid":"p","rqst":4})", [](App& a) { return a.OnPlanPackageBegin(L"p", &present); }},
    {"OnPlanCompatiblePackage", 20, "wzPackageId=p, pRequestedState=BOOTSTRAPPER_REQUEST_STATE_PRESENT", merge,
     R"({"pkid":"p","rqst":4})", [](App& a) { return a.OnPlanCompatiblePackage(L"p", &present); }},
    {"OnPlanTargetMsiPackage", 21, "wzPackageId=p, wzProductCode=c, pRequestedState=BOOTSTRAPPER_REQUEST_STATE_PRESENT",
     merge, R"({"pkid":"p","pcod":"c","rqst":4})",
     [](App& a) { return a.OnPlanTargetMsiPackage(L"p", L"c", &present); }},
    {"OnPlanMsiFeature", 22, "wzPackageId=p, wzFeatureId=f, pRequestedState=BOOTSTRAPPER_FEATURE_STATE_LOCAL", merge,
     R"({"pkid":"p","ftid":"f","rqst":3})", [](App& a) { return a.OnPlanMsiFeature(L"p", L"f", &local); }},
    {"OnPlanPackageComplete", 23,
     "wzPackageId=p, hrStatus=a7ff0643, state=BOOTSTRAPPER_PACKAGE_STATE_ABSENT, "
     "requested=BOOTSTRAPPER_REQUEST_STATE_PRESENT, execute=BOOTSTRAPPER_ACTION_STATE_INSTALL, "
     "rollback=BOOTSTRAPPER_ACTION_STATE_UNINSTALL",
     merge, R"({"pkid":"p","plst":"a7ff0643","pkst":2,"rqst":4,"exec":2,"rlbk":1})", quiet([](App& a) {
         a.OnPlanPackageComplete(L"p", failed, BOOTSTRAPPER_PACKAGE_STATE_ABSENT, BOOTSTRAPPER_REQUEST_STATE_PRESENT,
                                 BOOTSTRAPPER_ACTION_STATE_INSTALL, BOOTSTRAPPER_ACTION_STATE_UNINSTALL);
     })},
    {"OnPlanComplete", 24, "hrStatus=a7ff0643", merge, R"({"plst":"a7ff0643"})",
     quiet([](App& a) { a.OnPlanComplete(failed); })},
    {"OnApplyBegin", 25, "Entering OnApplyBegin", replace, "{}", [](App& a) { return a.OnApplyBegin(); }},
    {"OnApplyPhaseCount", 26, "dwPhaseCount=2", merge, R"({"nphs":2})", quiet([](App& a) { a.OnApplyPhaseCount(2); })},
    {"OnElevate", 27, "Entering OnElevate", replace, "{}", [](App& a) { return a.OnElevate(); }},
    {"OnProgress", 0, nullptr, merge, R"({"cpct":5,"opct":6})", [](App& a) { return a.OnProgress(5, 6); }},
    {"OnError", 0,
     "errorType=BOOTSTRAPPER_ERROR_TYPE_WINDOWS_INSTALLER, wzPackageId=p, dwCode=1603, wzError=e, uiFlags=MB_OK | "
     "MB_ICONHAND | MB_DEFBUTTON1, cData=2, rgwzData=[one, two], nRecommendation=7",
     merge, "{}",
     [](App& a) { return a.OnError(BOOTSTRAPPER_ERROR_TYPE_WINDOWS_INSTALLER, L"p", 1603, L"e", 0x10, 2, two, reco); }},
    {"OnRegisterBegin", 28, "Entering OnRegisterBegin", replace, "{}", [](App& a) { return a.OnRegisterBegin(); }},
    {"OnRegisterComplete", 29, "hrStatus=a7ff0643", merge, R"({"stat":"a7ff0643"})",
     quiet([](App& a) { a.OnRegisterComplete(failed); })},
    {"OnCacheBegin", 30, "Entering OnCacheBegin", replace, "{}", [](App& a) { return a.OnCacheBegin(); }},
    {"OnCachePackageBegin", 31, "wzPackageId=p, cCachePayloads=2, dw64PackageCacheSize=5000000000", replace,
     R"({"pkid":"p","cpld":2,"pcsz":5000000000})", [](App& a) { return a.OnCachePackageBegin(L"p", 2, 5000000000); }},
    {"OnCacheAcquireBegin", 32,
     "wzPackageOrContainerId=p, wzPayloadId=l, operation=BOOTSTRAPPER_CACHE_OPERATION_EXTRACT, wzSource=s", replace,
     R"({"pkid":"p","plid":"l","caop":2,"psrc":"s"})",
     [](App& a) { return a.OnCacheAcquireBegin(L"p", L"l", BOOTSTRAPPER_CACHE_OPERATION_EXTRACT, L"s"); }},
    {"OnCacheAcquireProgress", 0, nullptr, merge, R"({"dnld":5000000000,"totl":6000000000,"opct":8})",
     [](App& a) { return a.OnCacheAcquireProgress(L"p", L"l", 5000000000, 6000000000, 8); }},
    {"OnResolveSource", 33, "wzPackageOrContainerId=p, wzPayloadId=l, wzLocalSource=C:\\none, wzDownloadSource=d",
     merge, R"({"pkid":"p","plid":"l","lsrc":"C:\\none","dsrc":"d"})",
     [](App& a) { return a.OnResolveSource(L"p", L"l", L"C:\\none", L"d"); }, resultDownload},
    {"OnCacheAcquireComplete", 34, "wzPackageOrContainerId=p, wzPayloadId=l, hrStatus=a7ff0643, nRecommendation=7",
     merge, R"({"pkid":"p","plid":"l","cast":"a7ff0643","reco":7})",
     [](App& a) { return a.OnCacheAcquireComplete(L"p", L"l", failed, reco); }},
    {"OnCacheVerifyBegin", 35, "wzPackageOrContainerId=p, wzPayloadId=l", replace, R"({"pkid":"p","plid":"l"})",
     [](App& a) { return a.OnCacheVerifyBegin(L"p", L"l"); }},
    {"OnCacheVerifyComplete", 36, "wzPackageOrContainerId=p, wzPayloadId=l, hrStatus=a7ff0643, nRecommendation=7",
     merge, R"({"pkid":"p","plid":"l","stat":"a7ff0643","reco":7})",
     [](App& a) { return a.OnCacheVerifyComplete(L"p", L"l", failed, reco); }, reco},
    {"OnCachePackageComplete", 37, "wzPackageId=p, hrStatus=a7ff0643, nRecommendation=7", merge,
     R"({"pkid":"p","stat":"a7ff0643","reco":7})", [](App& a) { return a.OnCachePackageComplete(L"p", failed, reco); },
     reco},
    {"OnCacheComplete", 38, "hrStatus=a7ff0643", merge, R"({"stat":"a7ff0643"})",
     quiet([](App& a) { a.OnCacheComplete(failed); })},
    {"OnExecuteBegin", 39, "cExecutingPackages=2", replace, R"({"npkg":2})",
     [](App& a) { return a.OnExecuteBegin(2); }},
    {"OnExecutePackageBegin", 40, "wzPackageId=p, fExecute=true", replace, R"({"pkid":"p","exec":true})",
     [](App& a) { return a.OnExecutePackageBegin(L"p", TRUE); }},
    {"OnExecutePatchTarget", 41, "wzPackageId=p, wzTargetProductCode=c", merge, R"({"pkid":"p","pcod":"c"})",
     [](App& a) { return a.OnExecutePatchTarget(L"p", L"c"); }},
    {"OnExecuteProgress", 0, nullptr, merge, R"({"ppct":3,"opct":4})",
     [](App& a) { return a.OnExecuteProgress(L"p", 3, 4); }},
    {"OnExecuteMsiMessage", 0, nullptr, merge,
     R"({"msiact":{"imsg":134217744,"flag":1,"mesg":"m","args":"one, two","reco":7}})",
     [](App& a) { return a.OnExecuteMsiMessage(L"p", 0x08000010, 1, L"m", 2, two, reco); }, reco},
    {"OnExecuteFilesInUse", 0, "wzPackageId=p, cFiles=2, rgwzFiles=[one, two]", merge, R"({"fuse":"one, two"})",
     [](App& a) { return a.OnExecuteFilesInUse(L"p", 2, two); }},
    {"OnExecutePackageComplete", 42,
     "wzPackageId=p, hrStatus=a7ff0643, restart=BOOTSTRAPPER_APPLY_RESTART_REQUIRED, nRecommendation=7", merge,
     R"({"pkid":"p","stat":"a7ff0643","rstr":1,"reco":7})",
     [](App& a) { return a.OnExecutePackageComplete(L"p", failed, BOOTSTRAPPER_APPLY_RESTART_REQUIRED, reco); }, reco},
    {"OnExecuteComplete", 43, "hrStatus=a7ff0643", merge, R"({"stat":"a7ff0643"})",
     quiet([](App& a) { a.OnExecuteComplete(failed); })},
    {"OnUnregisterBegin", 44, "Entering OnUnregisterBegin", replace, "{}",
     quiet([](App& a) { a.OnUnregisterBegin(); })},
    {"OnUnregisterComplete", 45, "hrStatus=a7ff0643", merge, R"({"stat":"a7ff0643"})",
     quiet([](App& a) { a.OnUnregisterComplete(failed); })},
    {"OnApplyComplete", 46, "hrStatus=a7ff0643, restart=BOOTSTRAPPER_APPLY_RESTART_INITIATED", merge,
     R"({"stat":"a7ff0643","rstr":2})",
     [](App& a) { return a.OnApplyComplete(failed, BOOTSTRAPPER_APPLY_RESTART_INITIATED); }},
    {"OnLaunchApprovedExeBegin", 47, "Entering OnLaunchApprovedExeBegin", replace, "{}",
     [](App& a) { return a.OnLaunchApprovedExeBegin(); }},
    {"OnLaunchApprovedExeComplete", 48, "hrStatus=a7ff0643, dwProcessId=12", merge, R"({"stat":"a7ff0643","pid":12})",
     quiet([](App& a) { a.OnLaunchApprovedExeComplete(failed, 12); })},
    {"OnSystemShutdown", 3, "dwEndsession=1, nRecommendation=7", merge, R"({"ends":1,"reco":7})",
     [](App& a) { return a.OnSystemShutdown(1, reco); }, IDOK},
};

/// "PDXBA* TRACE (BootstrapperApplication::OnElevate:NN) Entering OnElevate", whatever the marker and the line number.
bool isLineOf(const EngineLogLine& logged, const Row& row) {
    const std::string text = toUtf8(logged.text);
    const std::string head = std::string(" TRACE (BootstrapperApplication::") + row.function + ":";
    const std::string tail = std::string(") ") + row.line;
    return logged.level == BOOTSTRAPPER_LOG_LEVEL_VERBOSE && text.starts_with("PDXBA") && text.find(head) == 6 &&
           text.ends_with(tail);
}

TEST(Callbacks, LeaveNumberLineAndContextOfTheirRow) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.function);
        ProbedRun probed;
        App& app = probed.slots();
        app.OnDetectPackageBegin(L"seed");
        app.OnProgress(1, 2);
        const Json seed = {{"pkid", "seed"}, {"cpct", 1}, {"opct", 2}};
        ASSERT_EQ(probed.app().state().context, seed);
        probed.engine.clearLog();

        EXPECT_EQ(row.call(app).value_or(0), row.result);

        Json expected = row.rule == replace ? Json::object() : seed;
        expected.update(Json::parse(row.attributes));
        EXPECT_EQ(probed.app().state().context, expected);
        EXPECT_EQ(probed.app().state().lastOperation, static_cast<Operation>(row.number ? row.number : 10));
        int lines = 0;
        for (const EngineLogLine& line : probed.engine.log()) lines += row.line && isLineOf(line, row);
        if (row.line)
            EXPECT_EQ(lines, 1);
        else
            EXPECT_TRUE(probed.engine.log().empty());
        EXPECT_EQ(present, BOOTSTRAPPER_REQUEST_STATE_PRESENT) << "no requested state is written to";
        EXPECT_EQ(local, BOOTSTRAPPER_FEATURE_STATE_LOCAL);
    }
}

TEST(Callbacks, AnswerACancelButNotInRollback) {
    ProbedRun probed;
    App& app = probed.slots();
    EXPECT_EQ(app.OnReserved57(1), 0);
    ASSERT_TRUE(probed.app().PromptCancel(nullptr, TRUE, nullptr, nullptr));
    ASSERT_TRUE(probed.app().PromptCancel(nullptr, FALSE, nullptr, nullptr)) << "a second one asks nobody";
    EXPECT_EQ(app.OnReserved57(1), IDCANCEL);
    EXPECT_EQ(app.OnReserved58(1, 2), IDCANCEL);
    EXPECT_EQ(app.OnReserved59(1, 2, 3), IDCANCEL);
    EXPECT_EQ(app.OnResolveSource(L"p", L"l", L"s", nullptr), IDCANCEL);
    // A payload is still told where it comes from; the end of the session has rules of its own.
    const auto hearsNoCancel = [](std::string_view slot) {
        return slot == "OnResolveSource" || slot == "OnSystemShutdown";
    };
    for (const Row& row : rows)
        if (!hearsNoCancel(row.function)) {
            EXPECT_EQ(row.call(app).value_or(IDCANCEL), IDCANCEL) << row.function;
        }
    app.OnExecutePackageBegin(L"p", FALSE);
    EXPECT_EQ(app.OnReserved57(1), 0);
    for (const Row& row : rows) {
        const std::string_view slot = row.function;
        if (slot == "OnExecutePackageBegin" || slot == "OnSystemShutdown") continue;
        EXPECT_EQ(row.call(app).value_or(0), row.result) << slot << " in rollback";
    }
}

/// Calls the slot with zeros, null pointers and, where a member of an enumeration belongs, a number beyond all of them.
template <typename Result, typename Slots, typename... Arguments>
Result callWildly(App& app, Result (STDMETHODCALLTYPE Slots::*slot)(Arguments...), int32_t wild) {
    const auto argument = [wild]<typename Type>(Type) {
        if constexpr (std::is_enum_v<Type>) return static_cast<Type>(wild);
        return Type();
    };
    return (app.*slot)(argument(Arguments())...);
}

TEST(Callbacks, TakeNullsAndValuesOutOfRange) {
    ProbedRun probed;
    App& app = probed.slots();
    const auto callAll = [&](auto... slots) {
        for (const int32_t wild : {0x12345678, -1}) (callWildly(app, slots, wild), ...);
    };
    callAll(&App::OnDetectForwardCompatibleBundle, &App::OnDetectUpdateBegin, &App::OnDetectUpdate,
            &App::OnDetectUpdateComplete, &App::OnDetectRelatedBundle, &App::OnDetectPackageBegin,
            &App::OnDetectCompatiblePackage, &App::OnDetectRelatedMsiPackage, &App::OnDetectTargetMsiPackage,
            &App::OnDetectMsiFeature, &App::OnDetectPackageComplete);
    EXPECT_TRUE(probed.engine.findLog(L"wzBundleId=, relationType=<INVALID>, wzBundleTag=, fPerMachine=false"));
    EXPECT_EQ(probed.app().state().context["pkid"], "");
    callAll(&App::OnPlanRelatedBundle, &App::OnPlanPackageBegin, &App::OnPlanCompatiblePackage,
            &App::OnPlanTargetMsiPackage, &App::OnPlanMsiFeature, &App::OnPlanPackageComplete,
            &App::OnCachePackageBegin, &App::OnCacheAcquireBegin, &App::OnCacheAcquireProgress,
            &App::OnCacheAcquireComplete, &App::OnCacheVerifyBegin, &App::OnCacheVerifyComplete,
            &App::OnCachePackageComplete, &App::OnExecutePackageBegin, &App::OnExecutePatchTarget,
            &App::OnExecuteProgress);
    EXPECT_TRUE(probed.engine.findLog(L"wzPackageId=, pRequestedState=<INVALID>"));
    EXPECT_EQ(app.OnResolveSource(nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(app.OnResolveSource(nullptr, nullptr, nullptr, L"http://x"), resultDownload);
    EXPECT_EQ(app.OnResolveSource(L"p", L"l", L"C:\\windows", L"http://x"), 0) << "what is there is not fetched";
    app.OnError(static_cast<BOOTSTRAPPER_ERROR_TYPE>(-2), nullptr, 0xFFFFFFFF, nullptr, 0xFFFFFFFF, 3, nullptr, 0);
    LPCWSTR holes[] = {nullptr, L"x", nullptr};
    app.OnExecuteMsiMessage(nullptr, 0x08000000, 0, nullptr, 3, holes, 0);
    EXPECT_EQ(probed.app().state().context["msiact"]["args"], ", x, ");
    app.OnExecuteMsiMessage(nullptr, -1, 0, nullptr, 3, nullptr, 0);
    app.OnExecuteFilesInUse(nullptr, 2, nullptr);
    callAll(&App::OnExecutePackageComplete, &App::OnApplyComplete);
    EXPECT_TRUE(probed.engine.findLog(L"restart=<INVALID>"));
    EXPECT_EQ(probed.app().state().lastOperation, Operation::applyComplete);
}

/// Fails at the first line of every callback, and keeps the errors that are logged.
struct FailingLogger : Logger {
    void write(int32_t level, const char*, int32_t, const char* message) override {
        if (level == logError) errors.emplace_back(message);
        if (level == logTrace || std::string_view(message).starts_with("[STARTUP]")) fail();
    }
    explicit FailingLogger(std::function<void()> failure) : fail(std::move(failure)) {}
    std::function<void()> fail;
    std::vector<std::string> errors;
};

/// A run whose application's callbacks fail.
struct FailingRun : ProbedRun {
    explicit FailingRun(std::function<void()> failure) : logger(std::make_shared<FailingLogger>(std::move(failure))) {
        app();
        g_logger.set(logger);
    }
    ~FailingRun() { g_logger.clear(); }
    std::shared_ptr<FailingLogger> logger;
};

TEST(Callbacks, KeepTheirExceptionsFromTheEngine) {
    const auto exhausted = [] { throw std::bad_alloc(); };
    const std::vector<std::string> last = {"OnDetectComplete", "OnPlanComplete", "OnApplyComplete"};
    const std::pair<std::string_view, int> otherDefaults[] = {
        {"OnError", reco}, {"OnResolveSource", 0}, {"OnCacheAcquireComplete", reco}};
    for (const Row& row : rows) {
        if (!row.line) continue;
        SCOPED_TRACE(row.function);
        FailingRun probed(exhausted);
        const auto other = std::ranges::find(otherDefaults, row.function, &std::pair<std::string_view, int>::first);
        EXPECT_EQ(row.call(probed.slots()).value_or(0), other == std::end(otherDefaults) ? row.result : other->second);
        EXPECT_EQ(probed.app().state().status.status, E_OUTOFMEMORY);
        EXPECT_EQ(probed.logger->errors.size(), 1u);
        // Nobody else would drive the run on.
        const bool ends = std::find(last.begin(), last.end(), row.function) != last.end();
        EXPECT_EQ(probed.engine.callTexts("Quit"),
                  ends ? std::vector<std::string>{"Quit(1)"} : std::vector<std::string>());
    }
    FailingRun probed([] { throw std::runtime_error("said"); });
    EXPECT_EQ(probed.slots().OnStartup(), E_FAIL) << "without a detection the engine would wait for ever";
    EXPECT_EQ(probed.app().state().status.status, E_FAIL);
    EXPECT_EQ(probed.logger->errors, std::vector<std::string>{"Callback failed: slot=3; error=said"});
    EXPECT_EQ(probed.slots().OnShutdown(), 0);
}

TEST(Callbacks, LetPassWhatIsToEndInACrash) {
    FailingRun probed([] { crashOnException([] { throw std::out_of_range("meant"); }); });
    const DWORD crashCode = CrashingThread::run([&probed] { probed.slots().OnDetectBegin(TRUE, 1); });
    EXPECT_EQ(crashCode, uncaughtExceptionCode);
    EXPECT_EQ(crashCode & 0xC0000000, 0xC0000000) << "of severity error";
    EXPECT_TRUE(probed.logger->errors.empty());
}

}  // namespace
}  // namespace pdx
