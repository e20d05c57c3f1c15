// The chooser of the install folder, and the check of the chosen one.
#include <windows.h>

#include <shlwapi.h>
#include <shobjidl.h>

#include "platform/ComPtr.h"
#include "platform/Log.h"
#include "platform/PathFunctions.h"
#include "platform/product/Client.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"
#include "platform/rules/Numbers.h"
#include "platform/Text.h"
#include "ui/dialog/BootstrapperDialog.h"
#include "ui/dialog/rules/FolderCheck.h"
#include "ui/dialog/rules/PromptTexts.h"

namespace pdx {
namespace {

bool isBastionFolder(const std::wstring& folder) {
    const std::wstring client = bastionText(L"ClientPath");
    if (client.empty() || !PathFileExistsW(client.c_str())) return false;
    return isAtOrUnder(toLower(folder), toLower(removeFileSpec(client)));
}

/// True for a volume whose free space is unknown.
bool hasFreeSpace(const std::wstring& folder) {
    wchar_t volume[pathCapacity];
    ULARGE_INTEGER free{};
    if (!GetVolumePathNameW(folder.c_str(), volume, pathCapacity) ||
        !GetDiskFreeSpaceExW(volume, &free, nullptr, nullptr))
        return true;
    return isSpaceEnough(free.QuadPart);
}

ComPtr<IShellItem> itemOf(const std::wstring& path) {
    ComPtr<IShellItem> item;
    if (FAILED(SHCreateItemFromParsingName(path.c_str(), nullptr, IID_IShellItem, item.putVoid()))) return nullptr;
    return item;
}

/// The folder in which the chooser opens: the parent of the product's folder, or else the folder of programs.
ComPtr<IShellItem> startingFolder(const std::wstring& shown) {
    if (auto item = itemOf(chooserFolder(shown, PathFindFileNameW(shown.c_str())))) return item;
    return itemOf(machineText(view64, windowsKey, L"ProgramFilesDir"));
}

/// The folder that the user picks; empty after a cancel or a failure.
std::wstring chooseFolder(HWND owner, const std::wstring& shown) {
    ComPtr<IFileOpenDialog> chooser;
    if (FAILED(CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_ALL, IID_IFileOpenDialog, chooser.putVoid())))
        return {};
    if (const auto start = startingFolder(shown)) chooser->SetFolder(start.get());
    chooser->SetOptions(FOS_PICKFOLDERS | FOS_FORCEFILESYSTEM);
    ComPtr<IShellItem> chosen;
    TaskText path;
    if (FAILED(chooser->Show(owner)) || FAILED(chooser->GetResult(chosen.put())) ||
        FAILED(chosen->GetDisplayName(SIGDN_FILESYSPATH, path.put())))
        return {};
    return path.get();
}

}  // namespace

bool BootstrapperDialog::ValidateInstallFolder(const std::wstring& folder) {
    PDX_LOG(logInfo, "BootstrapperDialog::ValidateInstallFolder", "folder=[%ls]", folder);
    const wchar_t* reason = nullptr;
    if (PathIsRelativeW(folder.c_str()))
        reason = L"INSTALLER_ERROR_RELATIVE_PATH";
    else if (PathIsNetworkPathW(folder.c_str()))
        reason = L"INSTALLER_ERROR_NETWORK_PATH";
    else if (isBastionFolder(folder))
        reason = L"INSTALLER_ERROR_BASTION_FOLDER";
    if (reason) {
        ShowPrompt(notice(L"INSTALLER_ERROR_TITLE", reason));
        return false;
    }
    if (!hasFreeSpace(folder)) {
        ShowPrompt(notice(L"INSTALLER_ERROR_DISK_SPACE_TITLE", L"INSTALLER_ERROR_DISK_SPACE"));
        return false;
    }
    return true;
}

void BootstrapperDialog::browse() {
    const std::wstring chosen = chooseFolder(hwnd, locationValue->GetText().substr(0, pathCapacity - 1));
    if (chosen.empty() || chosen.size() >= pathCapacity) return;
    const std::wstring folder =
        productFolderIn(chosen, PathFindFileNameW(chosen.c_str()), PathIsRootW(chosen.c_str()) != FALSE);
    if (folder.size() >= pathCapacity || !ValidateInstallFolder(folder)) return;
    locationValue->SetText(folder);
    run.setInstallFolder(folder);
}

}  // namespace pdx
