// Folders, paths of files, and names from the system. All paths are wide; on failure empty.
#pragma once

#include <shtypes.h>
#include <windows.h>

#include <string>

namespace pdx {

/// The module with this code: the library, or the program that it is linked into.
HMODULE libraryModule();

/// The temporary folder with a backslash at its end, 4094 characters at most; logs "Failed to retrieve temp path" at
/// INFO on failure.
std::wstring getTempPath();
/// A file in the folder of this library.
std::wstring getModuleFilePath(const std::wstring& name);
/// The path of the running program, or only its last component; 4096 characters at most.
std::wstring getProcessFilePath();
std::wstring getProcessFileName();
/// A known folder without a final separator, also if it does not exist.
std::wstring getKnownFolderPath(REFKNOWNFOLDERID id);
/// A variable of this process's environment; empty if it is unset or has more than 4096 characters.
std::wstring getEnvironmentText(const std::wstring& name);

// The logger uses these three, so they log nothing; the logger logs their failures (platform/Log.cpp).
/// The user's profile folder without a final separator.
std::wstring getProfilePath();
/// The user's name, 255 characters at most.
std::wstring getUserName();
/// The 8.3 form of an existing path, 260 characters at most.
std::wstring getShortPathName(const std::wstring& path);

}  // namespace pdx
