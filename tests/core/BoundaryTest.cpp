// The boundary to the engine: references, interfaces, the cancel flag, embedded progress, variables.
#include <gtest/gtest.h>

#include <string>

#include "core/rules/MsiChannel.h"
#include "tests/core/ApplicationProbe.h"

namespace pdx {
namespace {

/// Every slot that can answer a cancel, called so that it would otherwise answer 0.
struct Slot {
    const char* name;
    int (*call)(IBootstrapperApplication&);
};

const Slot cancellable[] = {
    {"OnDetectBegin", [](IBootstrapperApplication& a) { return a.OnDetectBegin(FALSE, 0); }},
    {"OnDetectForwardCompatibleBundle",
     [](IBootstrapperApplication& a) {
         return a.OnDetectForwardCompatibleBundle(L"b", BOOTSTRAPPER_RELATION_NONE, L"", FALSE, 0, 0);
     }},
    {"OnDetectUpdateBegin", [](IBootstrapperApplication& a) { return a.OnDetectUpdateBegin(L"l", 0); }},
    {"OnDetectUpdate", [](IBootstrapperApplication& a) { return a.OnDetectUpdate(L"", 0, 0, L"", L"", L"", L"", 0); }},
    {"OnDetectRelatedBundle",
     [](IBootstrapperApplication& a) {
         return a.OnDetectRelatedBundle(L"b", BOOTSTRAPPER_RELATION_NONE, L"", FALSE, 0,
                                        BOOTSTRAPPER_RELATED_OPERATION_NONE);
     }},
    {"OnDetectPackageBegin", [](IBootstrapperApplication& a) { return a.OnDetectPackageBegin(L"p"); }},
    {"OnDetectCompatiblePackage", [](IBootstrapperApplication& a) { return a.OnDetectCompatiblePackage(L"p", L"c"); }},
    {"OnDetectRelatedMsiPackage",
     [](IBootstrapperApplication& a) {
         return a.OnDetectRelatedMsiPackage(L"p", L"c", FALSE, 0, BOOTSTRAPPER_RELATED_OPERATION_NONE);
     }},
    {"OnDetectTargetMsiPackage",
     [](IBootstrapperApplication& a) {
         return a.OnDetectTargetMsiPackage(L"p", L"c", BOOTSTRAPPER_PACKAGE_STATE_ABSENT);
     }},
    {"OnDetectMsiFeature",
     [](IBootstrapperApplication& a) { return a.OnDetectMsiFeature(L"p", L"f", BOOTSTRAPPER_FEATURE_STATE_ABSENT); }},
    {"OnPlanBegin", [](IBootstrapperApplication& a) { return a.OnPlanBegin(0); }},
    {"OnPlanRelatedBundle", [](IBootstrapperApplication& a) { return a.OnPlanRelatedBundle(L"b", nullptr); }},
    {"OnPlanPackageBegin", [](IBootstrapperApplication& a) { return a.OnPlanPackageBegin(L"p", nullptr); }},
    {"OnPlanCompatiblePackage", [](IBootstrapperApplication& a) { return a.OnPlanCompatiblePackage(L"p", nullptr); }},
    {"OnPlanTargetMsiPackage",
     [](IBootstrapperApplication& a) { return a.OnPlanTargetMsiPackage(L"p", L"c", nullptr); }},
    {"OnPlanMsiFeature", [](IBootstrapperApplication& a) { return a.OnPlanMsiFeature(L"p", L"f", nullptr); }},
    {"OnApplyBegin", [](IBootstrapperApplication& a) { return a.OnApplyBegin(); }},
    {"OnElevate", [](IBootstrapperApplication& a) { return a.OnElevate(); }},
    {"OnProgress", [](IBootstrapperApplication& a) { return a.OnProgress(0, 0); }},
    {"OnError",
     [](IBootstrapperApplication& a) {
         return a.OnError(BOOTSTRAPPER_ERROR_TYPE_APPLY, L"p", 5, L"", 0, 0, nullptr, 0);
     }},
    {"OnRegisterBegin", [](IBootstrapperApplication& a) { return a.OnRegisterBegin(); }},
    {"OnCacheBegin", [](IBootstrapperApplication& a) { return a.OnCacheBegin(); }},
    {"OnCachePackageBegin", [](IBootstrapperApplication& a) { return a.OnCachePackageBegin(L"p", 0, 0); }},
    {"OnCacheAcquireBegin",
     [](IBootstrapperApplication& a) {
         return a.OnCacheAcquireBegin(L"p", L"l", BOOTSTRAPPER_CACHE_OPERATION_COPY, L"s");
     }},
    {"OnCacheAcquireProgress",
     [](IBootstrapperApplication& a) { return a.OnCacheAcquireProgress(L"p", L"l", 0, 0, 0); }},
    {"OnResolveSource", [](IBootstrapperApplication& a) { return a.OnResolveSource(L"p", L"l", L"s", nullptr); }},
    {"OnCacheAcquireComplete",
     [](IBootstrapperApplication& a) { return a.OnCacheAcquireComplete(L"p", L"l", S_OK, 0); }},
    {"OnCacheVerifyBegin", [](IBootstrapperApplication& a) { return a.OnCacheVerifyBegin(L"p", L"l"); }},
    {"OnCacheVerifyComplete", [](IBootstrapperApplication& a) { return a.OnCacheVerifyComplete(L"p", L"l", S_OK, 0); }},
    {"OnCachePackageComplete", [](IBootstrapperApplication& a) { return a.OnCachePackageComplete(L"p", S_OK, 0); }},
    {"OnExecuteBegin", [](IBootstrapperApplication& a) { return a.OnExecuteBegin(1); }},
    {"OnExecutePatchTarget", [](IBootstrapperApplication& a) { return a.OnExecutePatchTarget(L"p", L"c"); }},
    {"OnExecuteProgress", [](IBootstrapperApplication& a) { return a.OnExecuteProgress(L"p", 0, 0); }},
    {"OnExecuteMsiMessage",
     [](IBootstrapperApplication& a) { return a.OnExecuteMsiMessage(L"p", 0, 0, L"", 0, nullptr, 0); }},
    {"OnExecuteFilesInUse", [](IBootstrapperApplication& a) { return a.OnExecuteFilesInUse(L"p", 0, nullptr); }},
    {"OnExecutePackageComplete",
     [](IBootstrapperApplication& a) {
         return a.OnExecutePackageComplete(L"p", S_OK, BOOTSTRAPPER_APPLY_RESTART_NONE, 0);
     }},
    {"OnApplyComplete",
     [](IBootstrapperApplication& a) { return a.OnApplyComplete(S_OK, BOOTSTRAPPER_APPLY_RESTART_NONE); }},
    {"OnLaunchApprovedExeBegin", [](IBootstrapperApplication& a) { return a.OnLaunchApprovedExeBegin(); }},
    {"slot 57", [](IBootstrapperApplication& a) { return a.OnReserved57(1); }},
    {"slot 58", [](IBootstrapperApplication& a) { return a.OnReserved58(1, 2); }},
    {"slot 59", [](IBootstrapperApplication& a) { return a.OnReserved59(1, 2, 3); }},
};

TEST(Boundary, AnswersCancelInEverySlotButNotInRollback) {
    Bench bench;
    ProbedApplication& app = bench.app();
    for (const Slot& slot : cancellable) EXPECT_EQ(slot.call(app), 0) << slot.name;
    ASSERT_TRUE(app.PromptCancel(nullptr, TRUE, nullptr, nullptr));
    ASSERT_TRUE(app.PromptCancel(nullptr, FALSE, nullptr, nullptr)) << "a second one asks nobody";
    for (const Slot& slot : cancellable) EXPECT_EQ(slot.call(app), IDCANCEL) << slot.name;
    app.OnExecutePackageBegin(L"p", FALSE);
    for (const Slot& slot : cancellable) EXPECT_EQ(slot.call(app), 0) << slot.name;
    EXPECT_EQ(app.OnExecutePackageBegin(L"p", TRUE), IDCANCEL);
}

TEST(Boundary, RefusesTheEndOfTheSessionOnceApplying) {
    Bench bench;
    ProbedApplication& app = bench.app();
    constexpr DWORD critical = 0x40000000;
    EXPECT_EQ(app.OnSystemShutdown(0, IDCANCEL), IDOK);
    app.OnApplyBegin();
    EXPECT_EQ(app.OnSystemShutdown(0, IDOK), IDCANCEL);
    EXPECT_EQ(app.OnSystemShutdown(critical | 1, IDCANCEL), IDOK);
    app.OnApplyComplete(S_OK, BOOTSTRAPPER_APPLY_RESTART_NONE);
    EXPECT_EQ(app.OnSystemShutdown(0, IDOK), IDCANCEL) << "for the rest of the run";
}

TEST(Boundary, CountsReferencesAndKnowsItsInterfaces) {
    Bench bench;
    ProbedApplication& app = bench.app();
    EXPECT_GE(bench.engine.references(), 1u);
    EXPECT_EQ(app.QueryInterface(IID_IUnknown, nullptr), E_INVALIDARG);
    void* object = &bench;
    EXPECT_EQ(app.QueryInterface(IID_IBootstrapperEngine, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    for (const GUID& id : {IID_IUnknown, IID_IBootstrapperApplication}) {
        EXPECT_EQ(app.QueryInterface(id, &object), S_OK);
        EXPECT_EQ(object, static_cast<IBootstrapperApplication*>(&app));
        EXPECT_EQ(app.Release(), 1u);
    }
    bench.release();
    EXPECT_EQ(bench.engine.references(), 0u);
}

TEST(Boundary, TellsProgressToAnEmbeddingEngineAlone) {
    for (const auto display : {BOOTSTRAPPER_DISPLAY_FULL, BOOTSTRAPPER_DISPLAY_EMBEDDED}) {
        Bench bench(BOOTSTRAPPER_ACTION_INSTALL, display);
        ProbedApplication& app = bench.app();
        const bool embedded = display == BOOTSTRAPPER_DISPLAY_EMBEDDED;
        bench.engine.answers.embeddedResult = IDOK;
        EXPECT_EQ(app.OnProgress(3, 4), embedded ? IDOK : 0);
        EXPECT_EQ(bench.engine.callTexts("SendEmbeddedProgress"),
                  embedded ? std::vector<std::string>{"SendEmbeddedProgress(3, 4)"} : std::vector<std::string>{});
        bench.engine.answers.embeddedProgress = E_FAIL;
        EXPECT_EQ(app.OnProgress(5, 6), embedded ? -1 : 0);
        EXPECT_EQ(bench.engine.findLog(L"Failed to send embedded overall progress.").has_value(), embedded);
    }
}

TEST(Boundary, ReadsVariablesOfAnyLength) {
    Bench bench;
    ProbedApplication& app = bench.app();
    for (const size_t length : {0u, 254u, 255u, 256u, 257u, 10000u}) {
        const std::wstring text(length, L'x');
        bench.engine.variables.set(L"V", text);
        EXPECT_EQ(app.GetEngineVariable(L"V", false), text) << length;
        EXPECT_EQ(app.GetEngineVariable(L"V", true), text) << length;
    }
    bench.engine.variables.set(L"V", std::wstring(L"[W]\\x"));
    bench.engine.variables.set(L"W", std::wstring(300, L'w'));
    EXPECT_EQ(app.GetEngineVariable(L"V", false), L"[W]\\x");
    EXPECT_EQ(app.GetEngineVariable(L"V", true), std::wstring(300, L'w') + L"\\x");
    EXPECT_EQ(app.GetEngineVariable(L"none", true), L"");
    EXPECT_TRUE(bench.engine.findLog(L"variable=[none]; result=[]"));
}

TEST(Boundary, ReadsModesByTheirRule) {
    const struct {
        const wchar_t* value;  ///< null: unset
        bool on;
    } rows[] = {{L"0", false}, {L"1", true}, {L"", true}, {L"00", true}, {nullptr, true}};
    for (const auto& row : rows) {
        Bench bench;
        ProbedApplication& app = bench.app();
        for (const wchar_t* name : {L"PDX_REPAIR", L"PDX_MERIDIAN_MODE"}) {
            bench.engine.variables.erase(name);
            if (row.value) bench.engine.variables.set(name, std::wstring(row.value));
        }
        EXPECT_EQ(app.isRepair(), row.on);
        EXPECT_EQ(app.isMeridianMode(), row.on);
    }
    Bench bench;
    EXPECT_FALSE(bench.app().isThinInstaller());
    bench.engine.variables.set(L"IsThickInstaller", std::wstring(L"no"));
    EXPECT_TRUE(bench.app().isThinInstaller());
}

TEST(Boundary, TakesMessagesOfAnyShape) {
    Bench bench;
    ProbedApplication& app = bench.app();
    constexpr int actionStart = 0x08000000;
    const std::wstring longText(100000, L'x');
    app.OnExecuteMsiMessage(L"p", actionStart, 0, longText.c_str(), 0, nullptr, 0);
    EXPECT_EQ(app.state().context["msiact"]["mesg"], std::string(100000, 'x'));
    app.OnExecuteMsiMessage(L"p", actionStart, 0, L"a\xD800 b\xDC00", 0, nullptr, 0);
    EXPECT_EQ(app.state().context["msiact"]["mesg"], "a\xEF\xBF\xBD b\xEF\xBF\xBD");
    EXPECT_NO_THROW(app.state().context.dump());
    const std::wstring zeros = {L'a', L'\0', L'b'};
    app.OnExecuteMsiMessage(L"p", actionStart, 0, zeros.c_str(), 0, nullptr, 0);
    EXPECT_EQ(app.state().context["msiact"]["mesg"], "a");

    const size_t before = bench.engine.calls("SetVariableString").size();
    app.OnExecuteMsiMessage(L"p", actionStart, 0, L"PDX_SET_VARIABLE:NAME", 0, nullptr, 0);
    EXPECT_EQ(bench.engine.calls("SetVariableString").size(), before);
    EXPECT_EQ(app.state().context["msiact"]["mesg"], "a") << "a command is not kept as a message";
    app.OnExecuteMsiMessage(L"p", 0x03000000, 0, L"PDX_SET_VARIABLE:A=B=C", 0, nullptr, 0);
    EXPECT_EQ(bench.engine.variables.text(L"A"), L"B=C");
    app.OnExecuteMsiMessage(L"p", 0, 0, L"PDX_UPDATE_CONTEXT:msiact=text", 0, nullptr, 0);
    EXPECT_EQ(app.state().context["msiact"], "text");
    app.OnExecuteMsiMessage(L"p", actionStart, 0, L"again", 0, nullptr, 0);
    EXPECT_EQ(app.state().context["msiact"]["mesg"], "again");
    app.OnExecuteMsiMessage(L"p", 0x7F000000, 0, L"no kind", 0, nullptr, 0);
    EXPECT_EQ(app.state().context.size(), 1u);
}

}  // namespace
}  // namespace pdx
