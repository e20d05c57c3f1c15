#include "platform/product/Client.h"

#include <shlobj.h>
#include <shlwapi.h>

#include "platform/PathFunctions.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"
#include "platform/VersionInfo.h"

namespace pdx {

std::wstring clientText(const std::wstring& name) { return machineText(view64, productKey, name); }
std::wstring bastionText(const std::wstring& name) { return machineText(view32, bastionKey, name); }

std::wstring getLogFilePath(const std::wstring& name) {
    const std::wstring programData = getKnownFolderPath(FOLDERID_ProgramData);
    return programData.empty() ? programData : appendPath(programData, L"Palisade Desktop\\Logs\\" + name);
}

std::string getProgramVersion(const std::wstring& installLocation, const std::wstring& file) {
    const std::wstring path = PathIsRelativeW(installLocation.c_str())
                                  ? std::wstring()
                                  : appendPath(installLocation, L"Palisade Desktop\\" + file);
    return path.empty() ? std::string() : getFileVersion(path);
}

Handle launchClient(const std::wstring& parameters) {
    const RegistryKey product = RegistryKey::localMachine(view64).openSubKey(productKey, false);
    const std::wstring folder = toText(product.getValue(L"InstallLocation"));
    const std::wstring program = toText(product.getValue(L"LauncherAppPath"));
    return startProgram({.file = program, .parameters = parameters, .folder = folder});
}

}  // namespace pdx
