// Reports to a scenario what the installer's window shows, and does what mouse and keyboard cannot. Reads commands from
// standard input, a line each, and answers each with a line:
//
//   look                         the installers' dialogs as a JSON array, those that show first, in pixels of the
//   screen boxes                        the message boxes of all processes as a JSON array: caption and text ask WINDOW
//   MESSAGE WP LP     sends a message to a window of the first dialog's process: one given by its class, or
//                                "dialog", or a control of that by its number; answers with the result, or "none"
//                                without such a window, or "late" if there is no reply within 10 seconds
//   registry VIEW KEY            the values of a key that are texts or DWORDs, the latter as "0x00000001", as a JSON
//                                object; the default value's name is empty; null if the key is not there
//   tree VIEW KEY                the same of the key and all keys below it, by their paths from it ("" is its own)
//   hold NAME                    makes a mutex that stays until "release" or the end
//   hold-file PATH               opens a file that nobody else may open then
//   hold-service NAME            opens a service, which stays listed then though it is deleted
//   release                      releases what is held
//   service NAME COMMAND         makes and starts a service of the probe's (Probe.cpp); answers when it runs
//   end-service NAME             ends it, whatever its behaviour, and deletes it
//   service-state NAME           its state's number, 0 if there is no such service
//   handles PROCESS              how many handles a process has
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "harness/programs/lifecycle/ProcessCensus.h"
#include "harness/programs/RegistryTree.h"
#include "platform/Registry.h"
#include "platform/Text.h"
#include "resources/ids.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr UINT patience = 10000;  // milliseconds

Json rectangle(HWND window) {
    RECT rect{};
    POINT origin{};
    GetClientRect(window, &rect);
    ClientToScreen(window, &origin);
    return {{"x", origin.x}, {"y", origin.y}, {"width", rect.right}, {"height", rect.bottom}};
}

BOOL CALLBACK collect(HWND window, LPARAM target) {
    reinterpret_cast<std::vector<HWND>*>(target)->push_back(window);
    return TRUE;
}

std::vector<HWND> allWindows() {
    std::vector<HWND> found;
    EnumWindows(collect, reinterpret_cast<LPARAM>(&found));
    return found;
}

/// The installers' dialogs, recognised by their controls; those that show are first.
std::vector<HWND> findDialogs() {
    std::vector<HWND> found;
    for (HWND window : allWindows())
        if (GetDlgItem(window, IDC_ACTION1) && GetDlgItem(window, IDC_PICTURE)) found.push_back(window);
    std::stable_partition(found.begin(), found.end(), [](HWND window) { return IsWindowVisible(window) != FALSE; });
    return found;
}

HWND firstDialog() {
    const std::vector<HWND> found = findDialogs();
    return found.empty() ? nullptr : found.front();
}

std::string textOf(HWND window, int(WINAPI* read)(HWND, LPWSTR, int)) {
    wchar_t text[512] = {};
    read(window, text, static_cast<int>(std::size(text)));
    return pdx::toUtf8(text);
}

/// The visible windows that the process has besides its dialog, as the folder chooser.
Json otherWindows(HWND dialog, DWORD process) {
    Json found = Json::array();
    for (HWND window : allWindows()) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        Json other = rectangle(window);
        // The engine's message window reports itself visible and has no size.
        if (owner != process || window == dialog || !IsWindowVisible(window) || other["width"] == 0) continue;
        other["class"] = textOf(window, GetClassNameW);
        other["title"] = textOf(window, GetWindowTextW);
        found.push_back(other);
    }
    return found;
}

Json lookAt(HWND dialog) {
    // After whatever the dialog's thread is busy with, such as a change of its page.
    DWORD_PTR ignored = 0;
    SendMessageTimeoutW(dialog, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, patience, &ignored);
    Json seen = rectangle(dialog);
    DWORD process = 0;
    GUITHREADINFO thread{};
    thread.cbSize = sizeof thread;
    GetGUIThreadInfo(GetWindowThreadProcessId(dialog, &process), &thread);
    seen["process"] = process;
    seen["window"] = reinterpret_cast<uintptr_t>(dialog);
    seen["visible"] = IsWindowVisible(dialog) != FALSE;
    seen["focus"] = thread.hwndFocus ? GetDlgCtrlID(thread.hwndFocus) : 0;
    seen["controls"] = Json::array();
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        Json control = rectangle(child);
        control["id"] = GetDlgCtrlID(child);
        control["name"] = textOf(child, GetWindowTextW);
        control["shown"] = (GetWindowLongW(child, GWL_STYLE) & WS_VISIBLE) != 0;
        seen["controls"].push_back(control);
    }
    seen["others"] = otherWindows(dialog, process);
    return seen;
}

Json look() {
    Json seen = Json::array();
    for (HWND dialog : findDialogs()) seen.push_back(lookAt(dialog));
    return seen;
}

/// A message box is a dialog without a picture, with one label that has words.
Json boxes() {
    Json found = Json::array();
    for (HWND window : allWindows()) {
        if (!IsWindowVisible(window) || textOf(window, GetClassNameW) != "#32770" || GetDlgItem(window, IDC_PICTURE))
            continue;
        std::string text;
        for (HWND child = nullptr; (child = FindWindowExW(window, child, L"Static", nullptr)) && text.empty();)
            text = textOf(child, GetWindowTextW);
        found.push_back({{"caption", textOf(window, GetWindowTextW)}, {"text", text}});
    }
    return found;
}

/// The window of a class in the dialog's process: the engine's elevated process has one of the same class.
HWND findBesideDialog(const std::string& windowClass) {
    DWORD wanted = 0;
    GetWindowThreadProcessId(firstDialog(), &wanted);
    for (HWND window : allWindows()) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == wanted && textOf(window, GetClassNameW) == windowClass) return window;
    }
    return nullptr;
}

std::string ask(std::istringstream& arguments) {
    std::string target, message, wparam, lparam;
    arguments >> target >> message >> wparam >> lparam;
    const auto number = [](const std::string& text) { return std::stoul(text, nullptr, 0); };
    const HWND window = target == "dialog"             ? firstDialog()
                        : std::isdigit(target.front()) ? GetDlgItem(firstDialog(), static_cast<int>(number(target)))
                                                       : findBesideDialog(target);
    if (!window) return "none";
    DWORD_PTR result = 0;
    if (!SendMessageTimeoutW(window, number(message), number(wparam), static_cast<LPARAM>(number(lparam)), SMTO_NORMAL,
                             patience, &result))
        return "late";
    return std::to_string(result);
}

struct ServiceTraits {
    using Value = SC_HANDLE;
    static Value invalid() noexcept { return nullptr; }
    static void close(Value value) noexcept { CloseServiceHandle(value); }
};
using Service = pdx::UniqueHandle<ServiceTraits>;

Json registry(std::istringstream& arguments, bool whole) {
    std::string word, path;
    std::getline(arguments >> word >> std::ws, path);
    const auto root = path.starts_with("HKCU")   ? pdx::RegistryKey::currentUser
                      : path.starts_with("HKCR") ? pdx::RegistryKey::classesRoot
                                                 : pdx::RegistryKey::localMachine;
    pdx::RegistryKey key =
        root(word == "32" ? pdx::view32 : pdx::view64).openSubKey(pdx::toWide(path.substr(path.find('\\') + 1)), false);
    if (!whole) return key ? pdx::valuesOf(key) : nullptr;
    return pdx::treeOf(std::move(key));
}

pdx::Handle makeEvent(const std::wstring& name) {
    return pdx::Handle(CreateEventW(nullptr, TRUE, FALSE, (L"Global\\" + name).c_str()));
}

Service openService(const std::wstring& name) {
    const Service manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    return Service(OpenServiceW(manager.get(), name.c_str(), SERVICE_ALL_ACCESS));
}

std::string startService(const std::wstring& name, const std::wstring& command) {
    const pdx::Handle running = makeEvent(name + L".running");
    const Service manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    const Service service(CreateServiceW(manager.get(), name.c_str(), nullptr, SERVICE_ALL_ACCESS,
                                         SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_IGNORE,
                                         command.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr));
    if (!service || !StartServiceW(service.get(), 0, nullptr)) return "failed " + std::to_string(GetLastError());
    return WaitForSingleObject(running.get(), patience) == WAIT_OBJECT_0 ? "running" : "late";
}

std::string stateOf(const std::wstring& name) {
    SERVICE_STATUS status{};
    const Service service = openService(name);
    return std::to_string(service && QueryServiceStatus(service.get(), &status) ? status.dwCurrentState : 0);
}

std::string endService(const std::wstring& name) {
    SetEvent(makeEvent(name + L".release").get());
    for (DWORD waited = 0; waited < patience && stateOf(name) != "1"; waited += 50) Sleep(50);
    return DeleteService(openService(name).get()) ? "deleted" : "failed";
}

/// What is held until its release.
struct Held {
    pdx::Handle mutex;
    pdx::FileHandle file;
    Service service;
};

}  // namespace

int main() {
    Held held;
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream arguments(line);
        std::string command, rest;
        arguments >> command;
        const auto remainder = [&] {
            std::getline(arguments >> std::ws, rest);
            return pdx::toWide(rest);
        };
        std::string answer = "unknown";
        if (command == "look") {
            answer = look().dump();
        } else if (command == "boxes") {
            answer = boxes().dump();
        } else if (command == "ask") {
            answer = ask(arguments);
        } else if (command == "registry" || command == "tree") {
            answer = registry(arguments, command == "tree").dump();
        } else if (command == "hold") {
            held.mutex = pdx::Handle(CreateMutexW(nullptr, FALSE, remainder().c_str()));
            answer = held.mutex ? "held" : "failed";
        } else if (command == "hold-file") {
            held.file =
                pdx::FileHandle(CreateFileW(remainder().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
            answer = held.file ? "held" : "failed";
        } else if (command == "hold-service") {
            held.service = openService(remainder());
            answer = held.service ? "held" : "failed";
        } else if (command == "release") {
            held = {};
            answer = "released";
        } else if (command == "service") {
            arguments >> rest;
            const std::wstring name = pdx::toWide(rest);
            answer = startService(name, remainder());
        } else if (command == "end-service") {
            answer = endService(remainder());
        } else if (command == "service-state") {
            answer = stateOf(remainder());
        } else if (command == "handles") {
            answer = std::to_string(pdx::handleCountOf(std::stoul(pdx::toUtf8(remainder()))));
        }
        std::puts(answer.c_str());
        std::fflush(stdout);
    }
    return 0;
}
