// Every callback against its row: the number it leaves, the line it logs, what it makes of the context.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "platform/Text.h"
#include "tests/core/ApplicationProbe.h"

namespace pdx {
namespace {

using App = ProbedApplication;
using Json = nlohmann::json;

constexpr auto failed = static_cast<HRESULT>(0xa7ff0643);  // the system has no text for it
constexpr DWORD64 version = 0x0001000200030004;
constexpr int reco = 7;

enum Rule { replace, merge, unchanged };

struct Row {
    const char* function;
    int number;        ///< 0: the callback leaves the number alone
    const char* line;  ///< null: no line
    Rule rule;
    Json attributes;
    std::function<int(App&)> call;
    int result = 0;
};

BOOTSTRAPPER_REQUEST_STATE present = BOOTSTRAPPER_REQUEST_STATE_PRESENT;
BOOTSTRAPPER_FEATURE_STATE local = BOOTSTRAPPER_FEATURE_STATE_LOCAL;
LPCWSTR two[] = {L"one", L"two"};

/// For slots without a result.
template <typename Call>
std::function<int(App&)> quiet(Call call) {
    return [call](App& app) {
        call(app);
        return 0;
    };
}

const Row rows[] = {
    {"OnDetectBegin",
     4,
     "fInstalled=true, cPackages=3",
     replace,
     {{"inst", true}, {"npkg", 3}},
     [](App& a) { return a.OnDetectBegin(TRUE, 3); }},
    {"OnDetectForwardCompatibleBundle",
     5,
     "wzBundleId=b, relationType=BOOTSTRAPPER_RELATION_UPGRADE, wzBundleTag=t, fPerMachine=false, "
     "dw64Version=1.2.3.4, nRecommendation=7",
     merge,
     {{"bund", "b"}, {"relt", 2}, {"btag", "t"}, {"perm", false}, {"vers", "1.2.3.4"}, {"reco", 7}},
     [](App& a) {
         return a.OnDetectForwardCompatibleBundle(L"b", BOOTSTRAPPER_RELATION_UPGRADE, L"t", FALSE, version, reco);
     },
     reco},
    {"OnDetectUpdateBegin",
     6,
     "wzUpdateLocation=l, nRecommendation=7",
     replace,
     {{"locn", "l"}, {"reco", 7}},
     [](App& a) { return a.OnDetectUpdateBegin(L"l", reco); },
     reco},
    {"OnDetectUpdate",
     7,
     "wzUpdateLocation=l, dw64Size=5000000000, dw64Version=1.2.3.4, wzTitle=ti, wzSummary=su, wzContentType=ty, "
     "wzContent=co, nRecommendation=7",
     merge,
     {{"locn", "l"},
      {"size", 5000000000},
      {"vers", "1.2.3.4"},
      {"titl", "ti"},
      {"summ", "su"},
      {"type", "ty"},
      {"cont", "co"},
      {"reco", 7}},
     [](App& a) { return a.OnDetectUpdate(L"l", 5000000000, version, L"ti", L"su", L"ty", L"co", reco); },
     reco},
    {"OnDetectUpdateComplete",
     8,
     "hrStatus=a7ff0643, wzUpdateLocation=l",
     merge,
     {{"stat", "a7ff0643"}, {"locn", "l"}},
     quiet([](App& a) { a.OnDetectUpdateComplete(failed, L"l"); })},
    {"OnDetectRelatedBundle",
     9,
     "wzBundleId=b, relationType=BOOTSTRAPPER_RELATION_UPDATE, wzBundleTag=t, fPerMachine=true, dw64Version=1.2.3.4, "
     "operation=BOOTSTRAPPER_RELATED_OPERATION_MAJOR_UPGRADE",
     merge,
     {{"bund", "b"}, {"relt", 6}, {"btag", "t"}, {"perm", true}, {"vers", "1.2.3.4"}, {"oper", 3}},
     [](App& a) {
         return a.OnDetectRelatedBundle(L"b", BOOTSTRAPPER_RELATION_UPDATE, L"t", TRUE, version,
                                        BOOTSTRAPPER_RELATED_OPERATION_MAJOR_UPGRADE);
     }},
    {"OnDetectPackageBegin",
     10,
     "wzPackageId=p",
     replace,
     {{"pkid", "p"}},
     [](App& a) { return a.OnDetectPackageBegin(L"p"); }},
    {"OnDetectCompatiblePackage",
     11,
     "wzPackageId=p, wzCompatiblePackageId=c",
     merge,
     {{"pkid", "p"}, {"cpid", "c"}},
     [](App& a) { return a.OnDetectCompatiblePackage(L"p", L"c"); }},
    {"OnDetectRelatedMsiPackage",
     12,
     "wzPackageId=p, wzProductCode=c, fPerMachine=true, dw64Version=1.2.3.4, "
     "operation=BOOTSTRAPPER_RELATED_OPERATION_DOWNGRADE",
     merge,
     {{"pkid", "p"}, {"pcod", "c"}, {"perm", true}, {"vers", "1.2.3.4"}, {"oper", 1}},
     [](App& a) {
         return a.OnDetectRelatedMsiPackage(L"p", L"c", TRUE, version, BOOTSTRAPPER_RELATED_OPERATION_DOWNGRADE);
     }},
    {"OnDetectTargetMsiPackage",
     13,
     "wzPackageId=p, wzProductCode=c, patchState=BOOTSTRAPPER_PACKAGE_STATE_PRESENT",
     merge,
     {{"pkid", "p"}, {"pcod", "c"}, {"ptch", 4}},
     [](App& a) { return a.OnDetectTargetMsiPackage(L"p", L"c", BOOTSTRAPPER_PACKAGE_STATE_PRESENT); }},
    {"OnDetectMsiFeature",
     14,
     "wzPackageId=p, wzFeatureId=f, state=BOOTSTRAPPER_FEATURE_STATE_LOCAL",
     merge,
     {{"pkid", "p"}, {"ftid", "f"}, {"ftst", 3}},
     [](App& a) { return a.OnDetectMsiFeature(L"p", L"f", BOOTSTRAPPER_FEATURE_STATE_LOCAL); }},
    {"OnDetectPackageComplete",
     15,
     "wzPackageId=p, hrStatus=a7ff0643, state=BOOTSTRAPPER_PACKAGE_STATE_CACHED",
     merge,
     {{"pkid", "p"}, {"pkst", "a7ff0643"}},
     quiet([](App& a) { a.OnDetectPackageComplete(L"p", failed, BOOTSTRAPPER_PACKAGE_STATE_CACHED); })},
    {"OnDetectComplete", 16, "hrStatus=a7ff0643", merge, {{"stat", "a7ff0643"}}, quiet([](App& a) {
         a.OnDetectComplete(failed);
     })},
    {"OnPlanBegin", 17, "cPackages=2", replace, {{"npkg", 2}}, [](App& a) { return a.OnPlanBegin(2); }},
    {"OnPlanRelatedBundle",
     18,
     "wzBundleId=b, pRequestedState=BOOTSTRAPPER_REQUEST_STATE_PRESENT",
     merge,
     {{"bund", "b"}, {"rqst", 4}},
     [](App& a) { return a.OnPlanRelatedBundle(L"b", &present); }},
    {"OnPlanPackageBegin",
     19,
     "wzPackageId=p, pRequestedState=BOOTSTRAPPER_REQUEST_STATE_PRESENT",
     replace,
     {{"pkid", "p"}, {"rqst", 4}},
     [](App& a) { return a.OnPlanPackageBegin(L"p", &present); }},
    {"OnPlanCompatiblePackage",
     20,
     "wzPackageId=p, pRequestedState=BOOTSTRAPPER_REQUEST_STATE_PRESENT",
     merge,
     {{"pkid", "p"}, {"rqst", 4}},
     [](App& a) { return a.OnPlanCompatiblePackage(L"p", &present); }},
    {"OnPlanTargetMsiPackage",
     21,
     "wzPackageId=p, wzProductCode=c, pRequestedState=BOOTSTRAPPER_REQUEST_STATE_PRESENT",
     merge,
     {{"pkid", "p"}, {"pcod", "c"}, {"rqst", 4}},
     [](App& a) { return a.OnPlanTargetMsiPackage(L"p", L"c", &present); }},
    {"OnPlanMsiFeature",
     22,
     "wzPackageId=p, wzFeatureId=f, pRequestedState=BOOTSTRAPPER_FEATURE_STATE_LOCAL",
     merge,
     {{"pkid", "p"}, {"ftid", "f"}, {"rqst", 3}},
     [](App& a) { return a.OnPlanMsiFeature(L"p", L"f", &local); }},
    {"OnPlanPackageComplete",
     23,
     "wzPackageId=p, hrStatus=a7ff0643, state=BOOTSTRAPPER_PACKAGE_STATE_ABSENT, "
     "requested=BOOTSTRAPPER_REQUEST_STATE_PRESENT, execute=BOOTSTRAPPER_ACTION_STATE_INSTALL, "
     "rollback=BOOTSTRAPPER_ACTION_STATE_UNINSTALL",
     merge,
     {{"pkid", "p"}, {"plst", "a7ff0643"}, {"pkst", 2}, {"rqst", 4}, {"exec", 2}, {"rlbk", 1}},
     quiet([](App& a) {
         a.OnPlanPackageComplete(L"p", failed, BOOTSTRAPPER_PACKAGE_STATE_ABSENT, BOOTSTRAPPER_REQUEST_STATE_PRESENT,
                                 BOOTSTRAPPER_ACTION_STATE_INSTALL, BOOTSTRAPPER_ACTION_STATE_UNINSTALL);
     })},
    {"OnPlanComplete", 24, "hrStatus=a7ff0643", merge, {{"plst", "a7ff0643"}}, quiet([](App& a) {
         a.OnPlanComplete(failed);
     })},
    {"OnApplyBegin", 25, "Entering OnApplyBegin", replace, Json::object(), [](App& a) { return a.OnApplyBegin(); }},
    {"OnApplyPhaseCount", 26, "dwPhaseCount=2", merge, {{"nphs", 2}}, quiet([](App& a) { a.OnApplyPhaseCount(2); })},
    {"OnElevate", 27, "Entering OnElevate", replace, Json::object(), [](App& a) { return a.OnElevate(); }},
    {"OnProgress", 0, nullptr, merge, {{"cpct", 5}, {"opct", 6}}, [](App& a) { return a.OnProgress(5, 6); }},
    {"OnError", 0,
     "errorType=BOOTSTRAPPER_ERROR_TYPE_WINDOWS_INSTALLER, wzPackageId=p, dwCode=1603, wzError=e, uiFlags=MB_OK | "
     "MB_ICONHAND | MB_DEFBUTTON1, cData=2, rgwzData=[one, two], nRecommendation=7",
     unchanged, Json::object(),
     [](App& a) { return a.OnError(BOOTSTRAPPER_ERROR_TYPE_WINDOWS_INSTALLER, L"p", 1603, L"e", 0x10, 2, two, reco); }},
    {"OnRegisterBegin", 28, "Entering OnRegisterBegin", replace, Json::object(),
     [](App& a) { return a.OnRegisterBegin(); }},
    {"OnRegisterComplete", 29, "hrStatus=a7ff0643", merge, {{"stat", "a7ff0643"}}, quiet([](App& a) {
         a.OnRegisterComplete(failed);
     })},
    {"OnCacheBegin", 30, "Entering OnCacheBegin", replace, Json::object(), [](App& a) { return a.OnCacheBegin(); }},
    {"OnCachePackageBegin",
     31,
     "wzPackageId=p, cCachePayloads=2, dw64PackageCacheSize=5000000000",
     replace,
     {{"pkid", "p"}, {"cpld", 2}, {"pcsz", 5000000000}},
     [](App& a) { return a.OnCachePackageBegin(L"p", 2, 5000000000); }},
    {"OnCacheAcquireBegin",
     32,
     "wzPackageOrContainerId=p, wzPayloadId=l, operation=BOOTSTRAPPER_CACHE_OPERATION_EXTRACT, wzSource=s",
     replace,
     {{"pkid", "p"}, {"plid", "l"}, {"caop", 2}, {"psrc", "s"}},
     [](App& a) { return a.OnCacheAcquireBegin(L"p", L"l", BOOTSTRAPPER_CACHE_OPERATION_EXTRACT, L"s"); }},
    {"OnCacheAcquireProgress",
     0,
     nullptr,
     merge,
     {{"dnld", 5000000000}, {"totl", 6000000000}, {"opct", 8}},
     [](App& a) { return a.OnCacheAcquireProgress(L"p", L"l", 5000000000, 6000000000, 8); }},
    {"OnResolveSource",
     33,
     "wzPackageOrContainerId=p, wzPayloadId=l, wzLocalSource=C:\\none, wzDownloadSource=d",
     merge,
     {{"pkid", "p"}, {"plid", "l"}, {"lsrc", "C:\\none"}, {"dsrc", "d"}},
     [](App& a) { return a.OnResolveSource(L"p", L"l", L"C:\\none", L"d"); },
     resultDownload},
    {"OnCacheAcquireComplete",
     34,
     "wzPackageOrContainerId=p, wzPayloadId=l, hrStatus=a7ff0643, nRecommendation=7",
     merge,
     {{"pkid", "p"}, {"plid", "l"}, {"cast", "a7ff0643"}, {"reco", 7}},
     [](App& a) { return a.OnCacheAcquireComplete(L"p", L"l", failed, reco); }},
    {"OnCacheVerifyBegin",
     35,
     "wzPackageOrContainerId=p, wzPayloadId=l",
     replace,
     {{"pkid", "p"}, {"plid", "l"}},
     [](App& a) { return a.OnCacheVerifyBegin(L"p", L"l"); }},
    {"OnCacheVerifyComplete",
     36,
     "wzPackageOrContainerId=p, wzPayloadId=l, hrStatus=a7ff0643, nRecommendation=7",
     merge,
     {{"pkid", "p"}, {"plid", "l"}, {"stat", "a7ff0643"}, {"reco", 7}},
     [](App& a) { return a.OnCacheVerifyComplete(L"p", L"l", failed, reco); },
     reco},
    {"OnCachePackageComplete",
     37,
     "wzPackageId=p, hrStatus=a7ff0643, nRecommendation=7",
     merge,
     {{"pkid", "p"}, {"stat", "a7ff0643"}, {"reco", 7}},
     [](App& a) { return a.OnCachePackageComplete(L"p", failed, reco); },
     reco},
    {"OnCacheComplete", 38, "hrStatus=a7ff0643", merge, {{"stat", "a7ff0643"}}, quiet([](App& a) {
         a.OnCacheComplete(failed);
     })},
    {"OnExecuteBegin", 39, "cExecutingPackages=2", replace, {{"npkg", 2}}, [](App& a) { return a.OnExecuteBegin(2); }},
    {"OnExecutePackageBegin",
     40,
     "wzPackageId=p, fExecute=true",
     replace,
     {{"pkid", "p"}, {"exec", true}},
     [](App& a) { return a.OnExecutePackageBegin(L"p", TRUE); }},
    {"OnExecutePatchTarget",
     41,
     "wzPackageId=p, wzTargetProductCode=c",
     merge,
     {{"pkid", "p"}, {"pcod", "c"}},
     [](App& a) { return a.OnExecutePatchTarget(L"p", L"c"); }},
    {"OnExecuteProgress",
     0,
     nullptr,
     merge,
     {{"ppct", 3}, {"opct", 4}},
     [](App& a) { return a.OnExecuteProgress(L"p", 3, 4); }},
    {"OnExecuteMsiMessage",
     0,
     nullptr,
     merge,
     {{"msiact", {{"imsg", 0x08000010}, {"flag", 1}, {"mesg", "m"}, {"args", "one, two"}, {"reco", 7}}}},
     [](App& a) { return a.OnExecuteMsiMessage(L"p", 0x08000010, 1, L"m", 2, two, reco); },
     reco},
    {"OnExecuteFilesInUse",
     0,
     "wzPackageId=p, cFiles=2, rgwzFiles=[one, two]",
     merge,
     {{"fuse", "one, two"}},
     [](App& a) { return a.OnExecuteFilesInUse(L"p", 2, two); }},
    {"OnExecutePackageComplete",
     42,
     "wzPackageId=p, hrStatus=a7ff0643, restart=BOOTSTRAPPER_APPLY_RESTART_REQUIRED, nRecommendation=7",
     merge,
     {{"pkid", "p"}, {"stat", "a7ff0643"}, {"rstr", 1}, {"reco", 7}},
     [](App& a) { return a.OnExecutePackageComplete(L"p", failed, BOOTSTRAPPER_APPLY_RESTART_REQUIRED, reco); },
     reco},
    {"OnExecuteComplete", 43, "hrStatus=a7ff0643", merge, {{"stat", "a7ff0643"}}, quiet([](App& a) {
         a.OnExecuteComplete(failed);
     })},
    {"OnUnregisterBegin", 44, "Entering OnUnregisterBegin", replace, Json::object(),
     quiet([](App& a) { a.OnUnregisterBegin(); })},
    {"OnUnregisterComplete", 45, "hrStatus=a7ff0643", merge, {{"stat", "a7ff0643"}}, quiet([](App& a) {
         a.OnUnregisterComplete(failed);
     })},
    {"OnApplyComplete",
     46,
     "hrStatus=a7ff0643, restart=BOOTSTRAPPER_APPLY_RESTART_INITIATED",
     merge,
     {{"stat", "a7ff0643"}, {"rstr", 2}},
     [](App& a) { return a.OnApplyComplete(failed, BOOTSTRAPPER_APPLY_RESTART_INITIATED); }},
    {"OnLaunchApprovedExeBegin", 47, "Entering OnLaunchApprovedExeBegin", replace, Json::object(),
     [](App& a) { return a.OnLaunchApprovedExeBegin(); }},
    {"OnLaunchApprovedExeComplete",
     48,
     "hrStatus=a7ff0643, dwProcessId=12",
     merge,
     {{"stat", "a7ff0643"}, {"pid", 12}},
     quiet([](App& a) { a.OnLaunchApprovedExeComplete(failed, 12); })},
    {"OnSystemShutdown",
     3,
     "dwEndsession=1, nRecommendation=7",
     merge,
     {{"ends", 1}, {"reco", 7}},
     [](App& a) { return a.OnSystemShutdown(1, reco); },
     IDOK},
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
        Bench bench;
        App& app = bench.app();
        app.OnDetectPackageBegin(L"seed");
        app.OnProgress(1, 2);
        const Json seed = {{"pkid", "seed"}, {"cpct", 1}, {"opct", 2}};
        ASSERT_EQ(app.state().context, seed);
        bench.engine.clearLog();

        EXPECT_EQ(row.call(app), row.result);

        Json expected = row.rule == replace ? row.attributes : seed;
        if (row.rule == merge) expected.update(row.attributes);
        EXPECT_EQ(app.state().context, expected);
        EXPECT_EQ(app.state().lastOperation, row.number ? row.number : 10);
        int lines = 0;
        for (const EngineLogLine& line : bench.engine.log()) lines += row.line && isLineOf(line, row);
        if (row.line)
            EXPECT_EQ(lines, 1);
        else
            EXPECT_TRUE(bench.engine.log().empty());
        EXPECT_EQ(present, BOOTSTRAPPER_REQUEST_STATE_PRESENT) << "no requested state is written to";
        EXPECT_EQ(local, BOOTSTRAPPER_FEATURE_STATE_LOCAL);
    }
}

TEST(Callbacks, TakeNullsAndValuesOutOfRange) {
    constexpr auto wild = 0x12345678;
    Bench bench;
    App& app = bench.app();
    app.OnDetectForwardCompatibleBundle(nullptr, static_cast<BOOTSTRAPPER_RELATION_TYPE>(wild), nullptr, TRUE,
                                        UINT64_MAX, 0);
    EXPECT_TRUE(
        bench.engine.findLog(L"wzBundleId=, relationType=<INVALID>, wzBundleTag=, fPerMachine=true, "
                             L"dw64Version=65535.65535.65535.65535"));
    app.OnDetectUpdateBegin(nullptr, 0);
    app.OnDetectUpdate(nullptr, 0, 0, nullptr, nullptr, nullptr, nullptr, 0);
    app.OnDetectUpdateComplete(0, nullptr);
    app.OnDetectRelatedBundle(nullptr, static_cast<BOOTSTRAPPER_RELATION_TYPE>(-1), nullptr, FALSE, 0,
                              static_cast<BOOTSTRAPPER_RELATED_OPERATION>(wild));
    app.OnDetectPackageBegin(nullptr);
    app.OnDetectCompatiblePackage(nullptr, nullptr);
    app.OnDetectRelatedMsiPackage(nullptr, nullptr, FALSE, 0, static_cast<BOOTSTRAPPER_RELATED_OPERATION>(-1));
    app.OnDetectTargetMsiPackage(nullptr, nullptr, static_cast<BOOTSTRAPPER_PACKAGE_STATE>(wild));
    app.OnDetectMsiFeature(nullptr, nullptr, static_cast<BOOTSTRAPPER_FEATURE_STATE>(wild));
    app.OnDetectPackageComplete(nullptr, 0, static_cast<BOOTSTRAPPER_PACKAGE_STATE>(wild));
    EXPECT_EQ(app.state().context["pkid"], "");
    app.OnPlanRelatedBundle(nullptr, nullptr);
    app.OnPlanPackageBegin(nullptr, nullptr);
    EXPECT_TRUE(bench.engine.findLog(L"wzPackageId=, pRequestedState=<INVALID>"));
    app.OnPlanCompatiblePackage(nullptr, nullptr);
    app.OnPlanTargetMsiPackage(nullptr, nullptr, nullptr);
    app.OnPlanMsiFeature(nullptr, nullptr, nullptr);
    app.OnPlanPackageComplete(nullptr, 0, static_cast<BOOTSTRAPPER_PACKAGE_STATE>(wild),
                              static_cast<BOOTSTRAPPER_REQUEST_STATE>(wild),
                              static_cast<BOOTSTRAPPER_ACTION_STATE>(wild), static_cast<BOOTSTRAPPER_ACTION_STATE>(-1));
    app.OnError(static_cast<BOOTSTRAPPER_ERROR_TYPE>(wild), nullptr, 0xFFFFFFFF, nullptr, 0xFFFFFFFF, 3, nullptr, 0);
    app.OnCachePackageBegin(nullptr, 0, 0);
    app.OnCacheAcquireBegin(nullptr, nullptr, static_cast<BOOTSTRAPPER_CACHE_OPERATION>(wild), nullptr);
    app.OnCacheAcquireProgress(nullptr, nullptr, 1, 0, 0);
    EXPECT_EQ(app.OnResolveSource(nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(app.OnResolveSource(nullptr, nullptr, nullptr, L"http://x"), resultDownload);
    app.OnCacheAcquireComplete(nullptr, nullptr, failed, 0);
    app.OnCacheVerifyBegin(nullptr, nullptr);
    app.OnCacheVerifyComplete(nullptr, nullptr, 0, 0);
    app.OnCachePackageComplete(nullptr, 0, 0);
    app.OnExecutePackageBegin(nullptr, TRUE);
    app.OnExecutePatchTarget(nullptr, nullptr);
    app.OnExecuteProgress(nullptr, 0, 0);
    LPCWSTR holes[] = {nullptr, L"x", nullptr};
    app.OnExecuteMsiMessage(nullptr, 0x08000000, 0, nullptr, 3, holes, 0);
    EXPECT_EQ(app.state().context["msiact"]["args"], ", x, ");
    app.OnExecuteMsiMessage(nullptr, -1, 0, nullptr, 3, nullptr, 0);
    app.OnExecuteFilesInUse(nullptr, 2, nullptr);
    app.OnExecutePackageComplete(nullptr, 0, static_cast<BOOTSTRAPPER_APPLY_RESTART>(wild), 0);
    EXPECT_TRUE(bench.engine.findLog(L"restart=<INVALID>"));
    app.OnApplyComplete(0, static_cast<BOOTSTRAPPER_APPLY_RESTART>(-1));
    EXPECT_EQ(app.state().lastOperation, 46);
}

}  // namespace
}  // namespace pdx
