#include "state/ElevatedBinaries.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform/CapturedLog.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

TEST(ElevatedBinaries, AreLockedBelowTheTemporaryFolderHoweverItIsNamed) {
    const TestFolder folder;
    folder.addFile(L"A temporary folder\\.be\\setup.exe");
    folder.addFile(L"A temporary folder\\.be\\version.dll");
    const std::wstring temporary = folder.path(L"A temporary folder");
    DWORD session = 0;
    ProcessIdToSessionId(GetCurrentProcessId(), &session);
    const std::wstring ofSession = temporary + L'\\' + std::to_wstring(session);
    CreateDirectoryW(ofSession.c_str(), nullptr);
    for (const std::wstring& name : {temporary, getShortPathName(temporary), ofSession}) {
        const ScopedVariable variable(L"TMP", name);
        const CapturedLog log;
        std::vector<FileHandle> files;
        EXPECT_FALSE(LockElevatedBinaries(files, temporary + L"\\.be", L"setup.exe")) << "nobody signed them";
        EXPECT_THAT(files, testing::SizeIs(2)) << toUtf8(name);
    }
    EXPECT_NE(getShortPathName(temporary), temporary);
}

}  // namespace
}  // namespace pdx
