#include <windows.h>
// The next two need the types of windows.h.
#include <softpub.h>
#include <wincrypt.h>
#include <wintrust.h>

#include "bench/Benchmarks.h"
#include "platform/Handles.h"
#include "platform/Paths.h"
#include "platform/SystemFunction.h"
#include "state/ElevatedBinaries.h"

namespace pdx {
namespace {

constexpr int rounds = 21;
constexpr const wchar_t* names[] = {L"PalisadeSetup.exe", L"version.dll"};

/// The system's calls that every check of a signed file needs: open it, get its path, verify and read its signature.
void checkBare(const std::filesystem::path& path) {
    const FileHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    wchar_t finalPath[MAX_PATH];
    GetFinalPathNameByHandleW(file.get(), finalPath, MAX_PATH, 0);
    WINTRUST_FILE_INFO info{};
    info.cbStruct = sizeof info;
    info.pcwszFilePath = path.c_str();
    WINTRUST_DATA data{};
    data.cbStruct = sizeof data;
    data.dwUIChoice = WTD_UI_NONE;
    data.dwUnionChoice = WTD_CHOICE_FILE;
    data.pFile = &info;
    data.dwProvFlags = WTD_HASH_ONLY_FLAG;
    GUID action = WINTRUST_ACTION_GENERIC_VERIFY_V2;
    HCERTSTORE store = nullptr;
    HCRYPTMSG message = nullptr;
    static const auto verify = lookUp<decltype(&WinVerifyTrust)>(systemLibrary(L"wintrust.dll"), "WinVerifyTrust");
    const bool good =
        verify(nullptr, &action, &data) == 0 &&
        CryptQueryObject(CERT_QUERY_OBJECT_FILE, path.c_str(), CERT_QUERY_CONTENT_FLAG_PKCS7_SIGNED_EMBED,
                         CERT_QUERY_FORMAT_FLAG_BINARY, 0, nullptr, nullptr, nullptr, &store, &message, nullptr);
    if (message) CryptMsgClose(message);
    if (store) CertCloseStore(store, 0);
    if (!good) throw std::runtime_error("a file's signature cannot be checked");
}

}  // namespace

Measurements measureElevatedFiles(const std::filesystem::path& signedFiles) {
    const std::filesystem::path folder = std::filesystem::path(getTempPath()) / L"elevated";
    std::filesystem::create_directories(folder);
    for (const wchar_t* name : names)
        std::filesystem::copy_file(signedFiles / name, folder / name,
                                   std::filesystem::copy_options::overwrite_existing);
    const auto lock = [&] {
        std::vector<FileHandle> files;
        if (!ensureElevatedBinaries(files, folder.wstring(), names[0]))
            throw std::runtime_error("the elevated files cannot be locked");
    };
    const auto check = [&] {
        for (const wchar_t* name : names) checkBare(folder / name);
    };
    lock();
    // In turn, so that other load of the machine affects both alike.
    std::vector<double> locks, checks;
    for (int round = 0; round < rounds; ++round) {
        checks.push_back(secondsOf(check));
        locks.push_back(secondsOf(lock));
    }
    std::filesystem::remove_all(folder);
    const double locking = median(std::move(locks));
    const double bare = median(std::move(checks));
    return {
        {"elevated_files", locking * 1e3, "ms", "both files of an elevated start locked and their signatures checked"},
        {"elevated_files_ratio", locking / bare, "x", "that to the system's own calls alone"},
    };
}

}  // namespace pdx
