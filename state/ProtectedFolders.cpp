#include "state/ProtectedFolders.h"

#include <windows.h>
// shlobj.h needs the types of windows.h.
#include <shlobj.h>

#include <iterator>

#include "platform/Clock.h"
#include "platform/FoundFolder.h"
#include "platform/Paths.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"
#include "platform/rules/Numbers.h"

namespace pdx {
namespace {

// The folders above a protected one are protected too: ProgramData and the profile need no row.

struct KnownFolder {
    const KNOWNFOLDERID* id;
    const wchar_t* below;
    size_t depth;
};
const KnownFolder knownFolders[] = {
    {&FOLDERID_Windows, L"", allBelow},
    {&FOLDERID_UserProfiles, L"", 1},
    {&FOLDERID_ProgramFiles, L"", 0},
    {&FOLDERID_ProgramFilesCommon, L"", allBelow},
    {&FOLDERID_ProgramData, L"\\Microsoft", allBelow},
    {&FOLDERID_ProgramData, L"\\Package Cache", allBelow},
    // This account's folders, also moved ones.
    {&FOLDERID_Desktop, L"", 0},
    {&FOLDERID_Documents, L"", 0},
    {&FOLDERID_Downloads, L"", 0},
    {&FOLDERID_Pictures, L"", 0},
    {&FOLDERID_Music, L"", 0},
    {&FOLDERID_Videos, L"", 0},
    {&FOLDERID_LocalAppData, L"", 0},
    {&FOLDERID_RoamingAppData, L"", 0},
};

struct NamedFolder {
    const wchar_t* name;
    size_t depth;
};

/// A 32-bit process gets only the known folders of 32-bit programs. Those of 64-bit programs are read from windowsKey,
/// not from the environment, which the user controls.
constexpr NamedFolder foldersOf64BitPrograms[] = {{L"ProgramFilesDir", 0}, {L"CommonFilesDir", allBelow}};

constexpr const wchar_t* profilesKey = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList";

/// The known folders in every profile.
constexpr NamedFolder profileFolders[] = {
    {L"\\3D Objects", 0},  {L"\\AppData", 1},   {L"\\AppData\\Local\\Programs", 0},
    {L"\\Contacts", 0},    {L"\\Desktop", 0},   {L"\\Documents", 0},
    {L"\\Downloads", 0},   {L"\\Favorites", 0}, {L"\\Links", 0},
    {L"\\Music", 0},       {L"\\OneDrive", 0},  {L"\\Pictures", 0},
    {L"\\Saved Games", 0}, {L"\\Searches", 0},  {L"\\Videos", 0},
};

struct Profile {
    std::wstring account;  ///< its security identifier as text; empty for the public profile
    std::wstring path;
};

/// The profiles of all accounts, and the public one.
std::vector<Profile> profiles() {
    std::vector<Profile> found = {{{}, getKnownFolderPath(FOLDERID_Public)}};
    RegistryKey::localMachine(view64)
        .openSubKey(profilesKey, false)
        .enumerateSubKeys([&](RegistryKey& key, const std::wstring& account) {
            wchar_t path[pathCapacity];
            DWORD size = sizeof path;
            // Accepts a REG_EXPAND_SZ too and expands it.
            if (RegGetValueW(key.get(), account.c_str(), L"ProfileImagePath", RRF_RT_REG_SZ, nullptr, path, &size) ==
                ERROR_SUCCESS)
                found.push_back({account, path});
            return true;
        });
    return found;
}

/// The folders in an account's loaded registry, also moved ones.
std::vector<std::wstring> shellFoldersOf(const Profile& profile) {
    constexpr const wchar_t* shellFoldersKey =
        L"\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";
    constexpr DWORD mostValues = 200;  // the system makes about 25, but the account can write any number
    std::vector<std::wstring> found;
    RegistryHandle key;
    if (profile.account.empty() || RegOpenKeyExW(HKEY_USERS, (profile.account + shellFoldersKey).c_str(), 0,
                                                 KEY_QUERY_VALUE, key.put()) != ERROR_SUCCESS)
        return found;
    LSTATUS status = ERROR_SUCCESS;
    for (DWORD index = 0; index < mostValues && status != ERROR_NO_MORE_ITEMS; ++index) {
        wchar_t name[256];
        DWORD nameLength = std::size(name);
        wchar_t text[pathCapacity + 1] = {};  // the last stays zero: a text can lack its end mark
        DWORD size = pathCapacity * sizeof text[0];
        DWORD type = REG_NONE;
        status =
            RegEnumValueW(key.get(), index, name, &nameLength, nullptr, &type, reinterpret_cast<BYTE*>(text), &size);
        if (status == ERROR_SUCCESS && (type == REG_SZ || type == REG_EXPAND_SZ))
            found.push_back(inProfile(text, profile.path));
    }
    return found;
}

}  // namespace

std::vector<SystemFolder> protectedFolders() {
    std::vector<SystemFolder> folders;
    const auto add = [&](const std::wstring& path, const wchar_t* below, size_t depth) {
        if (!path.empty()) folders.push_back({path + below, depth});
    };
    for (const KnownFolder& folder : knownFolders) add(getKnownFolderPath(*folder.id), folder.below, folder.depth);
    for (const NamedFolder& folder : foldersOf64BitPrograms)
        add(machineText(view64, windowsKey, folder.name), L"", folder.depth);
    for (const Profile& profile : profiles()) {
        for (const NamedFolder& folder : profileFolders) add(profile.path, folder.name, folder.depth);
        for (const std::wstring& folder : shellFoldersOf(profile)) add(folder, L"", 0);
    }
    return folders;
}

std::optional<std::vector<SystemFolder>> withFinalPaths(std::vector<SystemFolder> folders,
                                                        std::chrono::milliseconds bound) {
    const std::chrono::milliseconds end = steadyTime() + bound;
    for (SystemFolder& folder : folders) {
        if (steadyTime() >= end) return std::nullopt;
        folder.path = isDrivePath(folder.path) ? volumePathOf(folder.path) : std::wstring();
    }
    return folders;
}

}  // namespace pdx
