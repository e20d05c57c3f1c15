// A run that lacks the rights that it needs: it starts an elevated copy of its program, or the engine starts its own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
// shellapi.h needs the types of windows.h.
#include <shellapi.h>

#include <map>
#include <string>
#include <thread>

#include "tests/core/ApplicationProbe.h"
#include "tests/platform/Probe.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

using namespace testing;

constexpr HRESULT filesNotLocked = static_cast<HRESULT>(0xA7FF0241);

/// The library's own variables of this process's environment.
std::map<std::wstring, std::wstring> ownEnvironment() {
    std::map<std::wstring, std::wstring> found;
    wchar_t* const block = GetEnvironmentStringsW();
    for (const wchar_t* entry = block; *entry; entry += wcslen(entry) + 1) {
        const std::wstring_view text(entry);
        if (text.starts_with(L"PDX_")) found.emplace(text.substr(0, text.find(L'=')), text.substr(text.find(L'=') + 1));
    }
    FreeEnvironmentStringsW(block);
    return found;
}

std::shared_ptr<TelemetryManager> makeInSession() {
    TelemetryManager::createSessionId();
    return RecordingTelemetry::make();
}

/// Whether another installer could begin now.
bool installerMayBegin() {
    const Handle mutex(CreateMutexW(nullptr, FALSE, L"Global\\Palisade_Desktop_Installer"));
    return mutex && GetLastError() != ERROR_ALREADY_EXISTS;
}

std::vector<UINT> errorsShown(const ProbedRun& probed) {
    std::vector<UINT> codes;
    for (const ErrorInfo& error : probed.ui.errors()) {
        codes.push_back(error.code);
        EXPECT_EQ(error.errorType, static_cast<DWORD>(PALISADE_ERROR_TYPE));
        EXPECT_EQ(error.defaultResult, 1);
    }
    return codes;
}

/// The arguments of a command line without a program, as the system splits them.
std::vector<std::wstring> argumentsOf(const std::wstring& commandLine) {
    int count = 0;
    const UniqueHandle<LocalMemoryTraits<LPWSTR>> all(CommandLineToArgvW((L"x " + commandLine).c_str(), &count));
    return {all.get() + 1, all.get() + count};
}

/// Locks the file, and another in the place of its library.
bool lockFile(std::vector<FileHandle>& files, const std::wstring& path) {
    for (const std::wstring& each : {path, probePath()}) files.push_back(holdFile(each, GENERIC_READ, FILE_SHARE_READ));
    return true;
}

struct CopyCase {
    const char* name;
    const wchar_t* mode;
    /// The process of the copy; none if the user refuses.
    std::function<Handle()> outcome;
    const wchar_t* parameters;
};

TEST(Elevated, StartsACopyAndEndsWhateverTheCopyDoes) {
    const auto failedCopy = [] {
        Handle copy = startProbe(L"");
        EXPECT_EQ(waitFor(copy), 2u);
        return copy;
    };
    const CopyCase rows[] = {
        {"a copy that ran and failed", L"PDX_REPAIR", failedCopy,
         L"PDX_MERIDIAN_MODE=0|KESTREL_AUTHCODE=c o\"d=e|PDX_UNINSTALL_BASTION=1|PDX_MERIDIAN_COHORT=\u00e4|"
         L"PDX_MERIDIAN_ENABLE=1|PDX_REPAIR=1|HARRIER_ENABLE=|"},
        {"a user who refuses", L"PDX_MERIDIAN_MODE", [] { return Handle(); },
         L"PDX_MERIDIAN_MODE=1|KESTREL_AUTHCODE=c o\"d=e|PDX_UNINSTALL_BASTION=1|PDX_MERIDIAN_COHORT=\u00e4|"
         L"PDX_MERIDIAN_ENABLE=1|PDX_REPAIR=0|HARRIER_ENABLE=|"},
    };
    const TestFolder folder;
    const std::wstring locked = folder.addFile(L"locked.exe");
    for (const CopyCase& row : rows) {
        SCOPED_TRACE(row.name);
        const ScopedVariable session(L"PDX_INSTALLER_SESSION_ID", L"");
        const ScopedVariable mode(row.mode, L"1");
        ProbedRun probed(BOOTSTRAPPER_ACTION_INSTALL, BOOTSTRAPPER_DISPLAY_NONE, makeInSession);
        std::vector<std::wstring> steps;
        probed.world.elevated = false;
        probed.world.lock = [&](auto& files, const std::wstring& place, const std::wstring& executable) {
            steps.push_back(L"lock " + place + L"\\" + executable);
            EXPECT_FALSE(installerMayBegin());
            return lockFile(files, locked);
        };
        ProgramStart copy;
        probed.world.start = [&](const ProgramStart& asked) {
            steps.emplace_back(L"start");
            copy = asked;
            EXPECT_TRUE(installerMayBegin());
            EXPECT_THAT(ownEnvironment(),
                        ElementsAre(Pair(L"PDX_INSTALLER_SESSION_ID", SizeIs(36)), Pair(row.mode, L"1")));
            return row.outcome();
        };
        probed.app();
        probed.engine.variables.set(row.mode, L"1");
        probed.engine.variables.set(L"KESTREL_AUTHCODE", L"c o\"d=e");
        probed.engine.variables.set(L"PDX_MERIDIAN_COHORT", L"\u00e4");
        probed.engine.variables.set(L"PDX_UNINSTALL_BASTION", L"1");
        const RunOutcome outcome = probed.run();
        EXPECT_EQ(outcome.failure, "");
        EXPECT_EQ(outcome.startup, S_OK);
        EXPECT_EQ(outcome.exitCode, 0u);
        EXPECT_EQ(outcome.find("OnDetectBegin"), nullptr);
        EXPECT_THAT(errorsShown(probed), IsEmpty());
        EXPECT_THAT(steps, ElementsAre(L"lock " + getProcessFilePath(), L"start"));
        EXPECT_EQ(copy.verb, L"runas");
        EXPECT_EQ(copy.file, locked) << "by the handle";
        std::wstring parameters;
        for (const std::wstring& argument : argumentsOf(copy.parameters)) parameters += argument + L'|';
        EXPECT_EQ(parameters, row.parameters);
        EXPECT_EQ(copy.folder, L"");
        EXPECT_EQ(copy.show, SW_SHOW);
        EXPECT_THAT(probed.reported(), Contains("enable"));
    }
}

TEST(Elevated, StartsNothingIfLockingFailsOrAfterACancel) {
    for (const bool cancelled : {false, true}) {
        ProbedRun probed;
        probed.engine.variables.set(L"PDX_REPAIR", L"1");
        probed.world.elevated = false;
        probed.world.lock = [&](auto&...) {
            if (cancelled) probed.app().PromptCancel(nullptr, TRUE, nullptr, nullptr);
            return cancelled;
        };
        probed.world.start = [](auto&) {
            ADD_FAILURE() << "started";
            return Handle();
        };
        const RunOutcome outcome = probed.run();
        EXPECT_EQ(outcome.startup, cancelled ? S_OK : filesNotLocked);
        EXPECT_EQ(errorsShown(probed), cancelled ? std::vector<UINT>{} : std::vector<UINT>{577});
        EXPECT_EQ(outcome.find("OnDetectBegin"), nullptr);
        EXPECT_EQ(probed.app().installStatus(), cancelled ? S_OK : filesNotLocked) << "reported as a failure";
    }
}

TEST(Elevated, LocksTheFilesUntilTheCopyHasStartedOrTheSessionEnds) {
    const TestFolder folder;
    const std::wstring path = folder.addFile(L"locked.exe");
    for (const bool sessionEnds : {false, true}) {
        const Handle copy = startProbe(L"wait");
        std::thread observer;
        ProbedRun probed;
        probed.engine.variables.set(L"PDX_REPAIR", L"1");
        probed.world.elevated = false;
        probed.world.lock = [&](auto& files, auto&...) { return lockFile(files, path); };
        probed.world.start = [&](auto&) {
            EXPECT_FALSE(probed.ui.leftTheScreen);
            observer = std::thread([&] {
                for (int tries = 0; !probed.ui.leftTheScreen && tries < 500; ++tries) Sleep(10);
                EXPECT_TRUE(probed.ui.leftTheScreen);
                EXPECT_FALSE(DeleteFileW(path.c_str()));
                sessionEnds ? probed.app().noteLogout() : void(TerminateProcess(copy.get(), 0));
            });
            Handle given;
            DuplicateHandle(GetCurrentProcess(), copy.get(), GetCurrentProcess(), given.put(), 0, FALSE,
                            DUPLICATE_SAME_ACCESS);
            return given;
        };
        EXPECT_EQ(probed.callbacks().OnStartup(), S_OK);
        EXPECT_EQ(WaitForSingleObject(copy.get(), 0), sessionEnds ? WAIT_TIMEOUT : WAIT_OBJECT_0);
        EXPECT_THAT(probed.engine.log(), Each(Field(&EngineLogLine::text, Not(HasSubstr(L"not ended its start")))));
        observer.join();
        TerminateProcess(copy.get(), 0);
        probed.callbacks().OnShutdown();
    }
}

TEST(Elevated, LocksTheEnginesFilesBeforeItsCopyStarts) {
    const struct {
        bool elevated, lockable, cancelled;
        int answer;
        const wchar_t* libraryFolder = L"C:\\T\\{1}\\.ba";
        const wchar_t* locked = L"C:\\T\\{1}\\.be|PalisadeSetup.exe";
    } rows[] = {{true, false, false, 0},         {true, false, true, IDCANCEL},
                {false, true, false, 0},         {false, true, true, IDCANCEL},
                {false, false, false, IDCANCEL}, {false, false, false, IDCANCEL, L"C:\\T\\.ba\\x", L"|"}};
    for (const auto& row : rows) {
        ProbedRun probed;
        probed.world.libraryFolder = row.libraryFolder;
        probed.engine.variables.set(L"BundleExecutableName", L"PalisadeSetup.exe");
        // What else names a program or its place.
        for (const wchar_t* other : {L"WixBundleName", L"WixBundleOriginalSource", L"WixBundleOriginalSourceFolder",
                                     L"WixBundleSourceProcessPath", L"WixBundleSourceProcessFolder"})
            probed.engine.variables.set(other, L"C:\\Downloads\\Other.exe");
        probed.callbacks().OnStartup();
        // As an argument of the command line would set it.
        probed.engine.variables.set(L"BundleExecutableName", L"Other.exe");
        probed.world.elevated = row.elevated;
        std::wstring locked;
        probed.world.lock = [&](auto&, const std::wstring& folder, const std::wstring& name) {
            locked = folder + L'|' + name;
            return row.lockable;
        };
        if (row.cancelled) probed.app().PromptCancel(nullptr, TRUE, nullptr, nullptr);
        EXPECT_EQ(probed.callbacks().OnElevate(), row.answer) << row.elevated << row.lockable << row.cancelled;
        EXPECT_EQ(locked, row.elevated ? L"" : row.locked);
        EXPECT_EQ(errorsShown(probed).size(), row.lockable || row.elevated ? 0u : 1u);
        probed.callbacks().OnShutdown();
    }
}

}  // namespace
}  // namespace pdx
