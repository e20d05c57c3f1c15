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

LogEntry stopping() { return {logInfo, "stopService", "Stopping service 'PalisadeServiceTest'..."}; }
LogEntry deleting() { return {logInfo, "deleteService", "Deleting service 'PalisadeServiceTest'..."}; }
LogEntry notDeleted() { return {logInfo, "deleteService", "Failed to delete service 'PalisadeServiceTest'"}; }

Handle makeEvent(const wchar_t* ending) {
    return Handle(CreateEventW(nullptr, TRUE, FALSE, (std::wstring(L"Global\\") + serviceName + ending).c_str()));
}

/// The service of one test; gone with it, whatever state it is in.
class ServicesTest : public testing::Test {
  protected:
    ServicesTest() : manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS)) { EXPECT_TRUE(manager); }

    ~ServicesTest() override {
        ServiceHandle service(OpenServiceW(manager.get(), serviceName, SERVICE_ALL_ACCESS));
        if (!service) return;
        // Released, the program ends whatever its behaviour is.
        const Handle program = serviceProgram(service.get());
        SetEvent(released.get());
        if (program) waitFor(program);
        DeleteService(service.get());
        service.reset();
        // The manager keeps it until it has noticed the program's end, and nothing tells of that.
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

    /// A service that has told that it runs.
    void run(const std::wstring& behaviour) {
        const ServiceHandle service = create(behaviour);
        ASSERT_TRUE(StartServiceW(service.get(), 0, nullptr)) << GetLastError();
        ASSERT_EQ(WaitForSingleObject(running.get(), 60'000), WAIT_OBJECT_0);
    }

    static Handle serviceProgram(SC_HANDLE service) {
        SERVICE_STATUS_PROCESS status{};
        DWORD needed = 0;
        QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&status), sizeof status, &needed);
        return Handle(status.dwProcessId ? OpenProcess(SYNCHRONIZE, FALSE, status.dwProcessId) : nullptr);
    }

    /// SERVICE_STOPPED and so on; 0 if there is no such service.
    DWORD state() {
        const ServiceHandle service(OpenServiceW(manager.get(), serviceName, SERVICE_QUERY_STATUS));
        SERVICE_STATUS status{};
        return service && QueryServiceStatus(service.get(), &status) ? status.dwCurrentState : 0;
    }

    ServiceHandle manager;
    Handle running = makeEvent(L".running");
    Handle released = makeEvent(L".release");
    CapturedLog log;
};

TEST_F(ServicesTest, AServiceThatDoesNotExistIsStoppedAndDeleted) {
    EXPECT_TRUE(stopService(serviceName, 2000));
    EXPECT_THAT(log.take(), ElementsAre(stopping()));
    EXPECT_TRUE(deleteService(serviceName, 2000));
    EXPECT_THAT(log.take(), ElementsAre(deleting())) << "without a stop";
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
    EXPECT_EQ(state(), DWORD{SERVICE_RUNNING});
    EXPECT_FALSE(deleteService(serviceName, 2000));
    EXPECT_THAT(log.take(), ElementsAre(stopping(), deleting(), stopping(), notDeleted()));
    EXPECT_EQ(state(), DWORD{SERVICE_RUNNING});
}

TEST_F(ServicesTest, LooksAgainUntilTheServiceIsReleased) {
    ServiceHandle held = create(L"normal");
    ASSERT_TRUE(held);
    std::thread holder([&] {
        // Nothing tells of the deletion, but a change is refused from then on.
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
