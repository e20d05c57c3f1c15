// A program for tests to start: it waits to be ended, records how it was started, locks files, or is a small service.
//
//   wait                   does nothing, without end
//   record FILE ...        writes its folder and its whole command line into the file, a line each
//   lock EXECUTABLE FILE   locks the files of an elevated start as a library in the program's folder would, and records
//                          as JSON: "locked", the result; "held", the files that no other process can write to or
//                          delete then; "milliseconds"; "lines", what was logged
//   service NAME BEHAVIOUR runs as the service NAME, behaving as the table below says
//
// Text files are UTF-8.
#include <windows.h>
// shellapi.h needs the types of windows.h.
#include <fmt/format.h>
#include <shellapi.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "config/Settings.h"
#include "platform/Handles.h"
#include "platform/Log.h"
#include "platform/PathFunctions.h"
#include "platform/Paths.h"
#include "platform/Text.h"
#include "state/ElevatedBinaries.h"

namespace {

/// What a service does when it is asked to stop.
struct Behaviour {
    std::wstring_view name;
    bool acceptsStop;
    DWORD milliseconds;  ///< how long it stays in SERVICE_STOP_PENDING
};

constexpr Behaviour behaviours[] = {
    {L"normal", true, 0},
    {L"slow", true, 800},
    {L"stuck", true, INFINITE},
    {L"refuses", false, 0},
};

struct Service {
    std::wstring name;
    Behaviour behaviour;
    SERVICE_STATUS_HANDLE handle = nullptr;
    pdx::Handle stopAsked;
    pdx::Handle released;  ///< named by the test: set, it ends the service whatever its behaviour
};

// The service manager calls back without an argument of ours.
Service service;

pdx::Handle openEvent(const std::wstring& name) {
    return pdx::Handle(CreateEventW(nullptr, TRUE, FALSE, (L"Global\\" + name).c_str()));
}

void report(DWORD state) {
    SERVICE_STATUS status{};
    status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status.dwCurrentState = state;
    status.dwControlsAccepted = state == SERVICE_RUNNING && service.behaviour.acceptsStop ? SERVICE_ACCEPT_STOP : 0;
    SetServiceStatus(service.handle, &status);
}

DWORD WINAPI onControl(DWORD control, DWORD, void*, void*) {
    if (control == SERVICE_CONTROL_STOP) {
        report(SERVICE_STOP_PENDING);
        SetEvent(service.stopAsked.get());
    }
    return NO_ERROR;
}

void WINAPI serviceMain(DWORD, wchar_t**) {
    service.stopAsked = pdx::Handle(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    service.released = openEvent(service.name + L".release");
    service.handle = RegisterServiceCtrlHandlerExW(service.name.c_str(), onControl, nullptr);
    report(SERVICE_RUNNING);
    SetEvent(openEvent(service.name + L".running").get());
    const HANDLE either[] = {service.stopAsked.get(), service.released.get()};
    WaitForMultipleObjects(2, either, FALSE, INFINITE);
    WaitForSingleObject(service.released.get(), service.behaviour.milliseconds);
    report(SERVICE_STOPPED);
}

int runService(const std::wstring& name, std::wstring_view behaviourName) {
    for (const Behaviour& behaviour : behaviours) {
        if (behaviour.name != behaviourName) continue;
        service.name = name;
        service.behaviour = behaviour;
        const SERVICE_TABLE_ENTRYW table[] = {{service.name.data(), serviceMain}, {nullptr, nullptr}};
        return StartServiceCtrlDispatcherW(table) ? 0 : 1;
    }
    return 2;
}

int writeFile(const std::wstring& path, const std::string& text) {
    const pdx::FileHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    return file && WriteFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr) ? 0 : 1;
}

int record(const std::wstring& path) {
    wchar_t folder[MAX_PATH]{};
    GetCurrentDirectoryW(MAX_PATH, folder);
    return writeFile(path, fmt::format("{}\n{}\n", pdx::toUtf8(folder), pdx::toUtf8(GetCommandLineW())));
}

struct KeptLines : pdx::Logger {
    void write(int32_t, const char* function, int32_t, const char* message) override {
        lines.push_back({function, message});
    }
    nlohmann::json lines = nlohmann::json::array();
};

int lock(const std::wstring& executable, const std::wstring& recordFile) {
    const auto log = std::make_shared<KeptLines>();
    pdx::g_logger.set(log);
    pdx::determineConfigurable();
    const std::wstring folder = pdx::elevatedFolderOf(pdx::removeFileSpec(pdx::getProcessFilePath()));
    std::vector<pdx::FileHandle> files;
    const auto start = std::chrono::steady_clock::now();
    nlohmann::json record = {{"locked", pdx::ensureElevatedBinaries(files, folder, executable)}};
    record["milliseconds"] =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
    record["held"] = nlohmann::json::array();
    for (const std::wstring& name : {executable, std::wstring(L"version.dll")}) {
        const auto isRefused = [path = pdx::appendPath(folder, name)](DWORD access) {
            constexpr DWORD anyShare = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
            const pdx::FileHandle other(
                CreateFileW(path.c_str(), access, anyShare, nullptr, OPEN_EXISTING, 0, nullptr));
            return !other && GetLastError() == ERROR_SHARING_VIOLATION;
        };
        if (isRefused(GENERIC_WRITE) && isRefused(DELETE)) record["held"].push_back(pdx::toUtf8(name));
    }
    record["lines"] = log->lines;
    return writeFile(recordFile, record.dump());
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, char*, int) {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    const std::vector<std::wstring> arguments(words, words + count);
    LocalFree(words);
    const std::wstring mode = count > 1 ? arguments[1] : L"";
    if (mode == L"wait") Sleep(INFINITE);
    if (mode == L"record" && count > 2) return record(arguments[2]);
    if (mode == L"lock" && count > 3) return lock(arguments[2], arguments[3]);
    if (mode == L"service" && count > 3) return runService(arguments[2], arguments[3]);
    return 2;
}
