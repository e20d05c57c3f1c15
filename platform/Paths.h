// Folders, the places of files, and names, as the system has them. All paths are wide; a failure gives the empty text.
#pragma once

#include <shtypes.h>
#include <windows.h>

#include <string>

namespace pdx {

/// The module that holds this code: the library, or the program that it is linked into.
HMODULE libraryModule();

/// The temporary folder with a backslash at its end; logs "Failed to retrieve temp path" at INFO on failure.
std::wstring getTempPath();
/// A file in the folder of this library.
std::wstring getModuleFilePath(const std::wstring& name);
/// The running program, whole or its last component alone; 4096 characters at most.
std::wstring getProcessFilePath();
std::wstring getProcessFileName();
/// A folder of the shell without a final separator, whether it exists or not.
std::wstring getKnownFolderPath(REFKNOWNFOLDERID id);
/// A variable of this process's environment; empty if it is unset or has more than 4096 characters.
std::wstring getEnvironmentText(const std::wstring& name);

// The logger needs these three, so they log nothing; it logs what is missing (platform/Log.cpp).
/// The user's profile folder without a final separator.
std::wstring getProfilePath();
/// The user's name, 255 characters at most.
std::wstring getUserName();
/// The 8.3 form of an existing path, 260 characters at most.
std::wstring getShortPathName(const std::wstring& path);

}  // namespace pdx
