// Folders, files' places and names, as the system tells them. All paths are wide; a failure gives the empty text.
#pragma once

#include <shtypes.h>
#include <windows.h>

#include <string>

namespace pdx {

/// The module that this code lies in: the library, or the program that it is linked into.
HMODULE libraryModule();

/// The temporary folder with a backslash at its end; logs "Failed to retrieve temp path" at INFO on failure.
std::wstring getTempPath();
/// A file beside this library.
std::wstring getModuleFilePath(const std::wstring& name);
/// The running program, whole or its last component alone; 4096 characters at most.
std::wstring getProcessFilePath();
std::wstring getProcessFileName();
/// A folder of the shell without a final separator, whether it exists or not.
std::wstring getKnownFolderPath(REFKNOWNFOLDERID id);
/// A variable of this process's environment; empty if it is unset or has more than 4096 characters.
std::wstring getEnvironmentText(const std::wstring& name);

/// The user's profile folder without a final separator; logs "There was a problem getting the current user's profile
/// path" when the system does not tell it.
std::wstring getProfilePath();
/// The user's name, 255 characters at most; logs "Unable to retrieve username!" when the system does not tell it.
std::wstring getUserName();
/// The 8.3 form of an existing path, 260 characters at most; logs "Failed to get short path name for %ls".
std::wstring getShortPathName(const std::wstring& path);

// The same three without a log line, and the lines alone, for the logger: it must not log while it looks these up.
std::wstring queryProfilePath();
std::wstring queryUserName();
std::wstring queryShortPathName(const std::wstring& path);
void logProfilePathMissing();
void logUserNameMissing();
void logShortPathNameMissing(const std::wstring& path);

}  // namespace pdx
