// Links to files and folders.
#pragma once

#include <windows.h>

#include <initializer_list>
#include <string>

#include "platform/Handles.h"
#include "platform/Text.h"

namespace pdx {

struct ChangeNotificationTraits {
    using Value = HANDLE;
    static Value invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void close(Value value) noexcept { FindCloseChangeNotification(value); }
};

/// A link, removed with its object. Wine can make and remove none of Windows' own, but takes a link of the system
/// below it for one.
class Link {
  public:
    Link(const std::wstring& folder, const std::wstring& name, const std::wstring& target, DWORD flags)
        : place(folder), path(folder + L'\\' + name) {
        if (!CreateSymbolicLinkW(path.c_str(), target.c_str(), flags) || !*this)
            run(L"ln -s", {target, folder + L"\\" + name});
    }
    ~Link() {
        if (!DeleteFileW(path.c_str()) && !RemoveDirectoryW(path.c_str())) run(L"rm -f", {path});
    }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    explicit operator bool() const { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

  private:
    /// Runs a program of the system below Wine, and waits for what it changes in the folder: there is no handle of it
    /// to wait for.
    void run(std::wstring command, std::initializer_list<std::wstring> paths) const {
        using ToUnix = char*(CDECL*)(const wchar_t*);
        const auto toUnix =
            reinterpret_cast<ToUnix>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name"));
        if (!toUnix) return;
        for (const std::wstring& argument : paths) {
            // Only of its folder, for the last component may be a link or not there yet.
            const size_t separator = argument.rfind(L'\\');
            char* unixFolder = toUnix(argument.substr(0, separator).c_str());
            if (!unixFolder) return;
            command += L" \"" + toWide(unixFolder) + L'/' + argument.substr(separator + 1) + L'"';
            HeapFree(GetProcessHeap(), 0, unixFolder);
        }
        const UniqueHandle<ChangeNotificationTraits> changed(FindFirstChangeNotificationW(
            place.c_str(), FALSE, FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_DIR_NAME));
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION started{};
        const std::wstring program = L"\\\\?\\unix\\bin\\" + command.substr(0, 2);
        if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                            &started))
            return;
        const Handle process(started.hProcess);
        const Handle thread(started.hThread);
        WaitForSingleObject(changed.get(), 10'000);
    }

    std::wstring place;
    std::wstring path;
};

}  // namespace pdx
