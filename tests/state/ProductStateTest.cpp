#include "state/ProductState.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Registry.h"
#include "tests/platform/CapturedLog.h"
#include "tests/platform/Probe.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t productKey[] = L"Software\\Corvane Works\\Palisade Desktop";

class SetUnavailableTest : public testing::Test {
  protected:
    SetUnavailableTest() { deleteKeys(); }
    ~SetUnavailableTest() override { deleteKeys(); }

    static void deleteKeys() {
        for (const RegistryView view : {view32, view64})
            RegistryKey::localMachine(view).deleteTree(L"Software\\Corvane Works");
    }
    static RegistryValue written(RegistryView view) {
        return RegistryKey::localMachine(view).getSubKeyValue(productKey, L"IsUnavailable");
    }
};

TEST_F(SetUnavailableTest, MarksBothViewsAndLeavesTheRest) {
    RegistryKey::localMachine(view64).setSubKeyValue(productKey, L"InstallLocation", L"C:\\Palisade");
    const CapturedLog log;
    setUnavailable();
    EXPECT_EQ(written(view32), RegistryValue(1u));
    EXPECT_EQ(written(view64), RegistryValue(1u));
    EXPECT_EQ(RegistryKey::localMachine(view64).getSubKeyValue(productKey, L"InstallLocation"),
              RegistryValue(L"C:\\Palisade"));
    setUnavailable(true);
    EXPECT_EQ(written(view32), RegistryValue(0u));
    EXPECT_EQ(written(view64), RegistryValue(0u));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(SetUnavailableTest, EndsTheClientsHelperOnceTheMarkIsThere) {
    const TestFolder folder;
    const std::wstring helper = folder.path(L"palisadeconnect_MICROSOFT.exe");
    const std::wstring client = folder.path(L"PalisadeConnect.exe");
    for (const std::wstring& program : {helper, client}) std::filesystem::copy_file(probePath(), program);
    const Handle helperProcess = startProbe(L"wait", helper);
    const Handle clientProcess = startProbe(L"wait", client);
    const CapturedLog log;
    setUnavailable();
    EXPECT_EQ(waitFor(helperProcess), 9u);
    EXPECT_EQ(WaitForSingleObject(clientProcess.get(), 0), DWORD{WAIT_TIMEOUT}) << "the client itself goes on";
    EXPECT_THAT(log.take(),
                ElementsAre(LogEntry{logInfo, "terminateProcesses", "Terminating palisadeconnect_MICROSOFT.exe"}));
    TerminateProcess(clientProcess.get(), 0);
    waitFor(clientProcess);
}

}  // namespace
}  // namespace pdx
