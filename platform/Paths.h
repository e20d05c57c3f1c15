// Folders, files' places and names, as the system tells them. All paths are wide; a failure gives the empty text.
#pragma once

#include <windows.h>

#include <string>

namespace pdx {

/// The module that this code lies in: the library, or the program that it is linked into.
HMODULE libraryModule();

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
