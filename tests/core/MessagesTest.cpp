// What a callback hands to the user interface, and what becomes of its answer.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/Paths.h"
#include "tests/core/ApplicationProbe.h"

namespace pdx {
namespace {

using App = ProbedApplication;
using Texts = std::vector<std::string>;

constexpr auto failed = static_cast<HRESULT>(0x80072ee2);
constexpr int dialogsAnswer = 77;

/// A run whose user interface is open, and answers everything with that number.
struct OpenRun : ProbedRun {
    explicit OpenRun(BOOTSTRAPPER_ACTION action = BOOTSTRAPPER_ACTION_INSTALL) : ProbedRun(action) {
        ui.answer = [](auto&, const auto&) { return dialogsAnswer; };
        app().OnStartup();
    }
    ~OpenRun() { app().OnShutdown(); }
};

TEST(Errors, AnErrorIsShownOnceWithItsArguments) {
    OpenRun probed;
    constexpr auto type = BOOTSTRAPPER_ERROR_TYPE_HTTP_AUTH_PROXY;
    EXPECT_EQ(probed.app().OnError(type, L"p", 407, L"text", 0x31, 0, nullptr, 9), dialogsAnswer);
    probed.app().OnShutdown();
    const auto errors = probed.ui.errors();
    ASSERT_EQ(errors.size(), 1u) << "not again at the end";
    EXPECT_EQ(errors[0].errorType, static_cast<DWORD>(type));
    EXPECT_EQ(errors[0].code, 407u);
    EXPECT_EQ(errors[0].uiHint, 0x31u);
    EXPECT_EQ(errors[0].defaultResult, 9);
}

TEST(PackageMessages, OnlyAnInstallShowsTheOlderClientsRemoval) {
    constexpr int actionStart = 0x08000000, unknown = 0x7F000000;
    const struct {
        const wchar_t* text = L"CA_MSG_BASTION_UNINSTALL_BEGIN";
        int type = actionStart;
        BOOTSTRAPPER_ACTION action = BOOTSTRAPPER_ACTION_INSTALL;
        Texts shows = {};
    } rows[] = {
        {.shows = {"showBastionTitle"}},
        {.type = unknown, .shows = {"showBastionTitle"}},
        {.text = L"CA_MSG_BASTION_UNINSTALL_BEGIN "},
        {.text = L"ca_msg_bastion_uninstall_begin"},
        {.action = BOOTSTRAPPER_ACTION_UNINSTALL},
    };
    for (const auto& row : rows) {
        OpenRun probed(row.action);
        probed.app().OnExecuteMsiMessage(L"p", row.type, 0, row.text, 0, nullptr, 0);
        EXPECT_EQ(probed.app().state().context.contains("msiact"), row.type == actionStart);
        EXPECT_EQ(probed.ui.names(), row.shows);
    }
}

TEST(PackageStatus, TheClientsPackageIsRecognisedInAnyCase) {
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

TEST(Downloads, RetriesAreCountedForEachPackage) {
    OpenRun probed;
    App& app = probed.app();
    const auto attempt = [&](const wchar_t* package, const wchar_t* payload, HRESULT status,
                             BOOTSTRAPPER_CACHE_OPERATION operation = BOOTSTRAPPER_CACHE_OPERATION_DOWNLOAD) {
        app.OnCacheAcquireBegin(package, payload, operation, L"s");
        return app.OnCacheAcquireComplete(package, payload, status, 0);
    };
    app.OnCachePackageBegin(L"p", 2, 1);
    EXPECT_EQ(attempt(L"p", L"a", failed), resultRetry);
    EXPECT_EQ(attempt(L"p", L"a", S_OK), dialogsAnswer);
    EXPECT_EQ(attempt(L"p", L"b", failed), resultRetry);
    EXPECT_EQ(probed.waitedSeconds(), 1 + 5) << "over payloads and over a success";
    app.OnCachePackageBegin(L"q", 1, 1);
    EXPECT_EQ(attempt(L"q", L"a", failed), resultRetry);
    EXPECT_EQ(probed.waitedSeconds(), 1 + 5 + 1);
    EXPECT_EQ(attempt(L"q", L"a", hresultFromWin32(userExitCode)), dialogsAnswer);
    EXPECT_EQ(attempt(L"q", L"c", failed, BOOTSTRAPPER_CACHE_OPERATION_COPY), dialogsAnswer);
    EXPECT_EQ(probed.waitedSeconds(), 1 + 5 + 1);
}

TEST(ClientLog, AHeldLogIsAnErrorAndItsPackagesStatusDoesNotCount) {
    OpenRun probed;
    App& app = probed.app();
    const std::wstring path = getTempPath() + L"held.log";
    probed.engine.variables.set(L"WixBundleLog_PalisadeApp.msi", path);
    const FileHandle held(
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    probed.ui.answer = [](auto&, const auto& step) { return step.name == "showError" ? 5 : dialogsAnswer; };
    EXPECT_EQ(app.OnExecutePackageBegin(L"PalisadeApp.msi", TRUE), dialogsAnswer);
    app.OnExecutePackageComplete(L"PalisadeApp.msi", static_cast<HRESULT>(0x80070005), BOOTSTRAPPER_APPLY_RESTART_NONE,
                                 0);
    EXPECT_EQ(static_cast<DWORD>(app.state().status.lastError), 0xA7FF0020);
    EXPECT_EQ(probed.ui.texts(), (Texts{"executePackageBegin(true, PalisadeApp.msi)", "showError(32)"}));
}

TEST(ClientLog, IsLockedForInstallAndRollbackUntilTheObjectIsDestroyed) {
    ProbedRun probed;
    App& app = probed.app();
    const std::wstring forward = getTempPath() + L"forward.log", back = getTempPath() + L"back.log";
    probed.engine.variables.set(L"WixBundleLog_PalisadeApp.msi", forward);
    probed.engine.variables.set(L"WixBundleRollbackLog_PalisadeApp.msi", back);
    std::ofstream(std::filesystem::path(forward)) << "planted";
    for (const BOOL installs : {TRUE, FALSE}) app.OnExecutePackageBegin(L"PalisadeApp.msi", installs);
    EXPECT_EQ(std::filesystem::file_size(forward), 0u) << "made anew";
    for (const std::wstring& path : {forward, back}) EXPECT_FALSE(DeleteFileW(path.c_str())) << path;
    app.OnExecutePackageBegin(L"None.msi", TRUE);
    const auto line = probed.engine.findLog(L"Unable to determine log path for None.msi");
    ASSERT_TRUE(line);
    EXPECT_EQ(line->level, BOOTSTRAPPER_LOG_LEVEL_ERROR);
    probed.release();
    for (const std::wstring& path : {forward, back}) EXPECT_TRUE(DeleteFileW(path.c_str())) << path;
}

}  // namespace
}  // namespace pdx
