#include "platform/Services.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <thread>

#include "platform/Files.h"
#include "tests/platform/CapturedLog.h"
#include "tests/platform/Probe.h"

namespace pdx {
namespace {

using testing::ElementsAre;

struct ServiceHandleTraits {
    using Value = SC_HANDLE;
    static Value invalid() noexcept { return nullptr; }
    static void close(Value value) noexcept { CloseServiceHandle(value); }
};
using ServiceHandle = UniqueHandle<ServiceHandleTraits>;

constexpr wchar_t serviceName[] = L"PalisadeServiceTest";

constexpr const char* stopping = "2 stopService Stopping service 'PalisadeServiceTest'...";
constexpr const char* deleting = "2 deleteService Deleting service 'PalisadeServiceTest'...";

Handle makeEvent(const wchar_t* ending) {
    return Handle(CreateEventW(nullptr, TRUE, FALSE, (std::wstring(L"Global\\") + serviceName + ending).c_str()));
}

/// The service of one test, removed with it in any state.
class ServicesTest : public testing::Test {
  protected:
    ServicesTest() : manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS)) { EXPECT_TRUE(manager); }

    ~ServicesTest() override {
        ServiceHandle service(OpenServiceW(manager.get(), serviceName, SERVICE_ALL_ACCESS));
        if (!service) return;
        // Released, the program ends whatever its behaviour is.
        const DWORD id = status().dwProcessId;
        const Handle program(id ? OpenProcess(SYNCHRONIZE, FALSE, id) : nullptr);
        SetEvent(released.get());
        if (program) waitFor(program);
        DeleteService(service.get());
        service.reset();
        // The manager keeps it until it has noticed the program's end, which it reports to nobody.
        EXPECT_TRUE(retryUntil([this] { return state() == 0; }, 6'000, 10));
    }

    ServiceHandle create(const std::wstring& behaviour) {
        const std::wstring command = L"\"" + probePath() + L"\" service " + serviceName + L" " + behaviour;
        ServiceHandle service(CreateServiceW(manager.get(), serviceName, nullptr, SERVICE_ALL_ACCESS,
                                             SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_IGNORE,
                                             command.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr));
        EXPECT_TRUE(service) << GetLastError();
        return service;
    }

    /// Starts a service; returns when it runs.
    void run(const std::wstring& behaviour) {
        const ServiceHandle service = create(behaviour);
        ASSERT_TRUE(StartServiceW(service.get(), 0, nullptr)) << GetLastError();
        ASSERT_EQ(WaitForSingleObject(running.get(), 60'000), WAIT_OBJECT_0);
    }

    /// All zero if there is no such service.
    SERVICE_STATUS_PROCESS status() {
        const ServiceHandle service(OpenServiceW(manager.get(), serviceName, SERVICE_QUERY_STATUS));
        SERVICE_STATUS_PROCESS found{};
        DWORD needed = 0;
        QueryServiceStatusEx(service.get(), SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&found), sizeof found,
                             &needed);
        return found;
    }
    DWORD state() { return status().dwCurrentState; }

    ServiceHandle manager;
    Handle running = makeEvent(L".running");
    Handle released = makeEvent(L".release");
    CapturedLog log;
};

TEST_F(ServicesTest, AMissingServiceCountsAsStoppedAndDeleted) {
    EXPECT_TRUE(stopService(serviceName, 2000));
    EXPECT_TRUE(deleteService(serviceName, 2000));
    EXPECT_THAT(log.takeTexts(), ElementsAre(stopping, deleting));
}

TEST_F(ServicesTest, DoesNotWaitForAServiceThatRefusesToStop) {
    ASSERT_NO_FATAL_FAILURE(run(L"refuses"));
    const Handle returned(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    std::thread ender([&] {
        // With any waiting the service has ended at the next look, 40 seconds later, and counts as stopped.
        if (WaitForSingleObject(returned.get(), 20'000) == WAIT_TIMEOUT) SetEvent(released.get());
    });
    EXPECT_FALSE(stopService(serviceName, 400'000));
    SetEvent(returned.get());
    ender.join();
    EXPECT_FALSE(deleteService(serviceName, 2000));
    EXPECT_THAT(log.takeTexts(), ElementsAre(stopping, deleting, stopping,
                                             "2 deleteService Failed to delete service 'PalisadeServiceTest'"));
    EXPECT_EQ(state(), DWORD{SERVICE_RUNNING});
}

TEST_F(ServicesTest, LooksAgainUntilTheServiceIsReleased) {
    ServiceHandle held = create(L"normal");
    ASSERT_TRUE(held);
    std::thread holder([&] {
        // Nothing reports the deletion, but a change is refused from then on.
        while (ChangeServiceConfigW(held.get(), SERVICE_NO_CHANGE, SERVICE_NO_CHANGE, SERVICE_NO_CHANGE, nullptr,
                                    nullptr, nullptr, nullptr, nullptr, nullptr, nullptr))
            Sleep(10);
        // Long enough for the first look, much shorter than the pause until the second one.
        Sleep(200);
        held.reset();
    });
    EXPECT_TRUE(deleteService(serviceName, 10'000));
    holder.join();
    EXPECT_EQ(state(), 0u);
}

}  // namespace
}  // namespace pdx
