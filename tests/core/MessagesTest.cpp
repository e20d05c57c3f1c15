// What a callback hands to the user interface, and what becomes of its answer.
#include <gtest/gtest.h>

#include <string>

#include "tests/core/ApplicationProbe.h"

namespace pdx {
namespace {

using App = ProbedApplication;
using Texts = std::vector<std::string>;

constexpr auto failed = static_cast<HRESULT>(0x80072ee2);
constexpr int dialogsAnswer = 77;

/// A run whose user interface is open, and answers everything with that number.
struct OpenRun : ProbedRun {
    explicit OpenRun(BOOTSTRAPPER_ACTION action = BOOTSTRAPPER_ACTION_INSTALL, int answer = dialogsAnswer)
        : ProbedRun(action) {
        ui.answer = [answer](auto&, const auto&) { return answer; };
        app().OnStartup();
    }
    ~OpenRun() { app().OnShutdown(); }
};

TEST(Messages, CarryAnErrorsRecord) {
    OpenRun probed;
    EXPECT_EQ(probed.app().OnError(BOOTSTRAPPER_ERROR_TYPE_HTTP_AUTH_PROXY, L"p", 407, L"text", 0x31, 0, nullptr, 9),
              dialogsAnswer);
    probed.app().OnShutdown();
    const auto errors = probed.ui.errors();
    ASSERT_EQ(errors.size(), 1u) << "shown once: not again at the end";
    EXPECT_EQ(errors[0].errorType, static_cast<DWORD>(BOOTSTRAPPER_ERROR_TYPE_HTTP_AUTH_PROXY));
    EXPECT_EQ(errors[0].code, 407u);
    EXPECT_EQ(errors[0].uiHint, 0x31u);
    EXPECT_EQ(errors[0].defaultResult, 9);
}

TEST(Messages, FollowTheOlderClientsRemovalInAnInstallRunOnly) {
    const std::tuple<BOOTSTRAPPER_ACTION, int, const wchar_t*, bool> rows[] = {
        {BOOTSTRAPPER_ACTION_INSTALL, 0x08000000, L"CA_MSG_BASTION_UNINSTALL_BEGIN", true},
        {BOOTSTRAPPER_ACTION_INSTALL, 0x7F000000, L"CA_MSG_BASTION_UNINSTALL_BEGIN", true},
        {BOOTSTRAPPER_ACTION_INSTALL, 0x08000000, L"CA_MSG_BASTION_UNINSTALL_BEGIN ", false},
        {BOOTSTRAPPER_ACTION_INSTALL, 0x08000000, L"ca_msg_bastion_uninstall_begin", false},
        {BOOTSTRAPPER_ACTION_UNINSTALL, 0x08000000, L"CA_MSG_BASTION_UNINSTALL_BEGIN", false},
    };
    for (const auto& [action, type, text, shown] : rows) {
        OpenRun probed(action);
        probed.app().OnExecuteMsiMessage(L"p", type, 0, text, 0, nullptr, 0);
        EXPECT_EQ(probed.app().state().context.contains("msiact"), type == 0x08000000) << "kept all the same";
        EXPECT_EQ(probed.ui.names(), shown ? Texts{"showBastionTitle"} : Texts{});
    }
}

TEST(Messages, OfTheClientsStatusRegardNoCaseOfItsId) {
    const std::pair<const wchar_t*, DWORD> rows[] = {{L"palisadeapp.MSI", 0xA7FF61A8}, {L"Other.msi", 0x80070643}};
    for (const auto& [package, lastError] : rows) {
        ProbedRun probed;
        probed.engine.variables.set(L"PDX_MSI_STATUS", std::wstring(L"25000"));
        App& app = probed.app();
        app.OnExecutePackageBegin(package, TRUE);
        app.OnExecutePackageComplete(package, static_cast<HRESULT>(0x80070643), BOOTSTRAPPER_APPLY_RESTART_NONE, 0);
        EXPECT_EQ(static_cast<DWORD>(app.state().status.lastError), lastError);
    }
}

TEST(Downloads, AreCountedInEachPackage) {
    OpenRun probed;
    App& app = probed.app();
    const auto attempt = [&app](const wchar_t* payload, HRESULT hr) {
        app.OnCacheAcquireBegin(L"p", payload, BOOTSTRAPPER_CACHE_OPERATION_DOWNLOAD, L"s");
        return app.OnCacheAcquireComplete(L"p", payload, hr, 0);
    };
    app.OnCachePackageBegin(L"p", 2, 1);
    EXPECT_EQ(attempt(L"a", failed), resultRetry);
    EXPECT_EQ(attempt(L"a", S_OK), dialogsAnswer);
    EXPECT_EQ(attempt(L"b", failed), resultRetry);
    EXPECT_EQ(probed.waitedSeconds(), 1 + 5) << "the count goes on over the payloads and over a success";
    app.OnCachePackageBegin(L"q", 1, 1);
    EXPECT_EQ(attempt(L"a", failed), resultRetry);
    EXPECT_EQ(probed.waitedSeconds(), 1 + 5 + 1);
    // Neither a cancel by status nor what is no download is retried.
    EXPECT_EQ(attempt(L"a", static_cast<HRESULT>(0x80070642)), dialogsAnswer);
    app.OnCacheAcquireBegin(L"q", L"c", BOOTSTRAPPER_CACHE_OPERATION_COPY, L"s");
    EXPECT_EQ(app.OnCacheAcquireComplete(L"q", L"c", failed, 0), dialogsAnswer);
    EXPECT_EQ(probed.waitedSeconds(), 1 + 5 + 1);
}

TEST(ClientLog, ThatSomebodyHoldsIsAnError) {
    OpenRun probed;
    App& app = probed.app();
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    const std::wstring path = std::wstring(folder) + L"held.log";
    probed.engine.variables.set(L"WixBundleLog_PalisadeApp.msi", path);
    const FileHandle held(
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    probed.ui.answer = [](auto&, const auto& step) { return step.name == "showError" ? 5 : dialogsAnswer; };
    EXPECT_EQ(app.OnExecutePackageBegin(L"PalisadeApp.msi", TRUE), dialogsAnswer);
    // Not marked as executing: what the package says of itself does not count.
    app.OnExecutePackageComplete(L"PalisadeApp.msi", static_cast<HRESULT>(0x80070005), BOOTSTRAPPER_APPLY_RESTART_NONE,
                                 0);
    EXPECT_EQ(static_cast<DWORD>(app.state().status.lastError), 0xA7FF0020);
    EXPECT_EQ(probed.ui.texts(), (Texts{"executePackageBegin(true, PalisadeApp.msi)", "showError(32)"}));
}

TEST(ClientLog, IsOpenedForwardAndInRollback) {
    ProbedRun probed;
    App& app = probed.app();
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    probed.engine.variables.set(L"WixBundleLog_PalisadeApp.msi", std::wstring(folder) + L"forward.log");
    probed.engine.variables.set(L"WixBundleRollbackLog_PalisadeApp.msi", std::wstring(folder) + L"back.log");
    app.OnExecutePackageBegin(L"PalisadeApp.msi", TRUE);
    app.OnExecutePackageBegin(L"PalisadeApp.msi", FALSE);
    for (const wchar_t* name : {L"forward.log", L"back.log"}) {
        const std::wstring path = std::wstring(folder) + name;
        EXPECT_TRUE(probed.engine.findLog(name));
        EXPECT_FALSE(DeleteFileW(path.c_str())) << "held";
    }
    app.OnExecutePackageBegin(L"None.msi", TRUE);
    const auto line = probed.engine.findLog(L"Unable to determine log path for None.msi");
    ASSERT_TRUE(line);
    EXPECT_EQ(line->level, BOOTSTRAPPER_LOG_LEVEL_ERROR);
    probed.release();
    for (const wchar_t* name : {L"forward.log", L"back.log"})
        EXPECT_TRUE(DeleteFileW((std::wstring(folder) + name).c_str())) << "released with the object";
}

}  // namespace
}  // namespace pdx
