#include "state/ProtectedFolders.h"

#include <windows.h>
// shlobj.h needs the types of windows.h.
#include <shlobj.h>

#include "platform/FolderRemoval.h"
#include "platform/Paths.h"
#include "platform/Registry.h"
#include "platform/rules/Numbers.h"

namespace pdx {
namespace {

struct KnownFolder {
    const KNOWNFOLDERID* id;
    const wchar_t* below;
    size_t depth;
};
const KnownFolder knownFolders[] = {
    {&FOLDERID_Windows, L"", allBelow},
    {&FOLDERID_UserProfiles, L"", 1},
    {&FOLDERID_ProgramFiles, L"", 0},
    {&FOLDERID_ProgramFilesCommon, L"", 0},
    {&FOLDERID_ProgramData, L"", 0},
    {&FOLDERID_ProgramData, L"\\Package Cache", allBelow},
    // Of this account, wherever they were moved.
    {&FOLDERID_Desktop, L"", 0},
    {&FOLDERID_Documents, L"", 0},
    {&FOLDERID_Downloads, L"", 0},
    {&FOLDERID_Pictures, L"", 0},
    {&FOLDERID_Music, L"", 0},
    {&FOLDERID_Videos, L"", 0},
    {&FOLDERID_LocalAppData, L"", 0},
    {&FOLDERID_RoamingAppData, L"", 0},
};

/// A 32-bit process gets the folders of 32-bit programs as known folders. From the registry, for variables of the
/// environment are the user's.
constexpr const wchar_t* windowsKey = L"Software\\Microsoft\\Windows\\CurrentVersion";
constexpr const wchar_t* foldersOf64BitPrograms[] = {L"ProgramFilesDir", L"CommonFilesDir"};

constexpr const wchar_t* profilesKey = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList";

/// The known folders in every profile.
struct ProfileFolder {
    const wchar_t* below;
    size_t depth;
};
constexpr ProfileFolder profileFolders[] = {
    {L"", 0},
    {L"\\3D Objects", 0},
    {L"\\AppData", 1},
    {L"\\AppData\\Local\\Programs", 0},
    {L"\\Contacts", 0},
    {L"\\Desktop", 0},
    {L"\\Documents", 0},
    {L"\\Downloads", 0},
    {L"\\Favorites", 0},
    {L"\\Links", 0},
    {L"\\Music", 0},
    {L"\\OneDrive", 0},
    {L"\\Pictures", 0},
    {L"\\Saved Games", 0},
    {L"\\Searches", 0},
    {L"\\Videos", 0},
};

/// Of all accounts, and the one that they share.
std::vector<std::wstring> profiles() {
    std::vector<std::wstring> found = {getKnownFolderPath(FOLDERID_Public), getKnownFolderPath(FOLDERID_Profile)};
    RegistryKey::localMachine(view64)
        .openSubKey(profilesKey, false)
        .enumerateSubKeys([&](RegistryKey& key, const std::wstring& account) {
            wchar_t path[pathCapacity];
            DWORD size = sizeof path;
            // Takes a REG_EXPAND_SZ too and expands it.
            if (RegGetValueW(key.get(), account.c_str(), L"ProfileImagePath", RRF_RT_REG_SZ, nullptr, path, &size) ==
                ERROR_SUCCESS)
                found.emplace_back(path);
            return true;
        });
    return found;
}

}  // namespace

std::vector<SystemFolder> protectedFolders() {
    std::vector<SystemFolder> folders;
    const auto add = [&](const std::wstring& path, const wchar_t* below, size_t depth) {
        if (!path.empty()) folders.push_back({path + below, depth});
    };
    for (const KnownFolder& folder : knownFolders) add(getKnownFolderPath(*folder.id), folder.below, folder.depth);
    for (const wchar_t* name : foldersOf64BitPrograms) add(machineText(view64, windowsKey, name), L"", 0);
    for (const std::wstring& profile : profiles())
        for (const ProfileFolder& folder : profileFolders) add(profile, folder.below, folder.depth);
    return folders;
}

std::vector<SystemFolder> byVolume(std::vector<SystemFolder> folders) {
    for (SystemFolder& folder : folders) folder.path = volumePathOf(folder.path);
    return folders;
}

}  // namespace pdx
