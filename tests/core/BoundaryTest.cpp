// The boundary to the engine: references, interfaces, embedded progress, variables.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "config/Translator.h"
#include "core/rules/MsiChannel.h"
#include "tests/core/ApplicationProbe.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

TEST(Boundary, CountsReferencesAndReturnsItsInterfaces) {
    ProbedRun probed;
    IBootstrapperApplication& app = probed.callbacks();
    EXPECT_GE(probed.engine.references(), 1u);
    EXPECT_EQ(app.QueryInterface(IID_IUnknown, nullptr), E_INVALIDARG);
    void* object = &probed;
    EXPECT_EQ(app.QueryInterface(IID_IBootstrapperEngine, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    for (const GUID& id : {IID_IUnknown, IID_IBootstrapperApplication}) {
        EXPECT_EQ(app.QueryInterface(id, &object), S_OK);
        EXPECT_EQ(object, &app) << "guarded as the first";
        EXPECT_EQ(app.Release(), 1u);
    }
    probed.release();
    EXPECT_EQ(probed.engine.references(), 0u);
}

TEST(Boundary, SendsEachKindOfProgressToAParentEngine) {
    ProbedRun alone;
    EXPECT_EQ(alone.app().noteProgress(3, 4), 0);
    EXPECT_TRUE(alone.engine.calls("SendEmbeddedProgress").empty());
    ProbedRun probed(BOOTSTRAPPER_ACTION_INSTALL, BOOTSTRAPPER_DISPLAY_EMBEDDED);
    ProbedApplication& app = probed.app();
    probed.engine.answers.embeddedResult = IDOK;
    EXPECT_EQ(app.noteProgress(3, 4), IDOK);
    app.cacheProgressAnswer();
    app.executeProgressAnswer(5, 6);
    EXPECT_EQ(probed.engine.callTexts("SendEmbeddedProgress"),
              (std::vector<std::string>{"SendEmbeddedProgress(3, 4)", "SendEmbeddedProgress(3, 4)",
                                        "SendEmbeddedProgress(5, 6)"}));
    probed.engine.answers.embeddedProgress = E_FAIL;
    EXPECT_EQ(app.noteProgress(0, 0), -1);
    EXPECT_EQ(app.cacheProgressAnswer(), -1);
    EXPECT_EQ(app.executeProgressAnswer(5, 6), -1);
    for (const char* kind : {"overall", "cache", "execute"}) {
        const auto line = L"Error 0x80004005: Failed to send embedded " + toWide(kind) + L" progress.";
        const auto logged = probed.engine.findLog(line);
        ASSERT_TRUE(logged) << kind;
        EXPECT_EQ(logged->text, line);
        EXPECT_EQ(logged->level, BOOTSTRAPPER_LOG_LEVEL_ERROR);
    }
}

TEST(Boundary, LoadsTheStringsBeforeTheFirstEngineCall) {
    struct WatchingEngine : SmallEngine {
        void note() { words.push_back(g_translator.get() ? g_translator.get()->translate(L"installer_yes") : L""); }
        HRESULT STDMETHODCALLTYPE GetVariableString(LPCWSTR name, LPWSTR value, DWORD* size) override {
            return note(), SmallEngine::GetVariableString(name, value, size);
        }
        HRESULT STDMETHODCALLTYPE SetVariableString(LPCWSTR name, LPCWSTR value) override {
            return note(), SmallEngine::SetVariableString(name, value);
        }
        std::vector<std::wstring> words;
    } engine;
    g_translator.clear();
    const ScopedVariable reloaded(L"PDX_REPAIR", L"1");
    const BOOTSTRAPPER_COMMAND command = {};
    const auto noUi = [](RunControls&) { return std::unique_ptr<RunUi>(); };
    const auto app = new ProbedApplication(&engine, &command, 0, 0, noUi, nullptr);
    EXPECT_THAT(engine.words, testing::Each(L"YES"));
    EXPECT_FALSE(engine.words.empty());
    app->Release();
}

TEST(Boundary, ReadsVariablesOfAnyLength) {
    ProbedRun probed;
    ProbedApplication& app = probed.app();
    for (const size_t length : {0u, 254u, 255u, 256u, 257u, 10000u}) {
        const std::wstring text(length, L'x');
        probed.engine.variables.set(L"V", text);
        EXPECT_EQ(app.GetEngineVariable(L"V", false), text) << length;
        EXPECT_EQ(app.GetEngineVariable(L"V", true), text) << length;
    }
    probed.engine.variables.set(L"V", std::wstring(L"[W]\\x"));
    probed.engine.variables.set(L"W", std::wstring(300, L'w'));
    EXPECT_EQ(app.GetEngineVariable(L"V", false), L"[W]\\x");
    EXPECT_EQ(app.GetEngineVariable(L"V", true), std::wstring(300, L'w') + L"\\x");
    EXPECT_EQ(app.GetEngineVariable(L"none", true), L"");
    EXPECT_TRUE(probed.engine.findLog(L"variable=[none]; result=[]"));
}

TEST(Boundary, EachValueButZeroTurnsAModeOn) {
    // value: null: unset
    const std::pair<const wchar_t*, bool> rows[] = {
        {L"0", false}, {L"1", true}, {L"", true}, {L"00", true}, {nullptr, true}};
    for (const auto& [value, on] : rows) {
        ProbedRun probed;
        ProbedApplication& app = probed.app();
        for (const wchar_t* name : {L"PDX_REPAIR", L"PDX_MERIDIAN_MODE"}) {
            probed.engine.variables.erase(name);
            if (value) probed.engine.variables.set(name, std::wstring(value));
        }
        EXPECT_EQ(app.isRepair(), on);
        EXPECT_EQ(app.isMeridianMode(), on);
    }
    ProbedRun probed;
    EXPECT_FALSE(probed.app().isThinInstaller());
    probed.engine.variables.set(L"IsThickInstaller", std::wstring(L"no"));
    EXPECT_TRUE(probed.app().isThinInstaller());
}

TEST(Boundary, AcceptsMessagesOfAnyText) {
    ProbedRun probed;
    ProbedApplication& app = probed.app();
    constexpr int actionStart = 0x08000000;
    const std::wstring longText(100000, L'x');
    app.OnExecuteMsiMessage(L"p", actionStart, 0, longText.c_str(), 0, nullptr, 0);
    EXPECT_EQ(app.state().context["msiact"]["mesg"], std::string(100000, 'x'));
    app.OnExecuteMsiMessage(L"p", actionStart, 0, L"a\xD800 b\xDC00", 0, nullptr, 0);
    EXPECT_EQ(app.state().context["msiact"]["mesg"], "a\xEF\xBF\xBD b\xEF\xBF\xBD");
    EXPECT_NO_THROW(app.state().context.dump());
    app.OnExecuteMsiMessage(L"p", actionStart, 0, L"PDX_SET_VARIABLE:NAME", 0, nullptr, 0);
    EXPECT_NE(app.state().context["msiact"]["mesg"], "PDX_SET_VARIABLE:NAME") << "a command is no message";
    app.OnExecuteMsiMessage(L"p", 0, 0, L"PDX_UPDATE_CONTEXT:msiact=text", 0, nullptr, 0);
    EXPECT_EQ(app.state().context["msiact"], "text");
}

}  // namespace
}  // namespace pdx
