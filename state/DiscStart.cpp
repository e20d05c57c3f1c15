#include "state/DiscStart.h"

#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"

namespace pdx {
namespace {

constexpr const wchar_t* setupConfig = L"/SetupConfig";
constexpr const wchar_t* keys[] = {setupConfig, L"/contentIds", L"/contentLocation"};

/// Adds the parameter of an argument that begins with the key and one separator, which may be any character. False for
/// any other argument. Throws for the bare key.
bool addItdParameter(const std::wstring& argument, const std::wstring& key, std::wstring& itdParams) {
    if (!argument.starts_with(key)) return false;
    const std::wstring name = key.substr(1);
    const std::wstring value = argument.substr(key.size() + 1);
    RegistryKey::currentUser(view32).setSubKeyValue(productKey + std::wstring(L"\\pendingITDjob"), name, value);
    itdParams += L" -" + name + L'=' + value;
    return true;
}

bool addAnyParameter(const std::wstring& argument, std::wstring& itdParams) {
    for (const wchar_t* key : keys)
        if (addItdParameter(argument, key, itdParams)) return true;
    return false;
}

}  // namespace

bool checkForITD(std::wstring& itdParams, const std::wstring& bundleFolder, std::span<const std::wstring> arguments) {
    const std::wstring setupFile = bundleFolder + L"Autorun\\thinsetup.json";
    if (fileExists(bundleFolder + L"autorun.inf") && fileExists(setupFile)) {
        addItdParameter(setupConfig + (L':' + setupFile), setupConfig, itdParams);
        PDX_LOG(logInfo, "checkForITD", "Started from a game disc, isITD=%d itdParams=[%ls]", 1, itdParams);
        return true;
    }
    bool found = false;
    for (const std::wstring& argument : arguments) found |= addAnyParameter(argument, itdParams);
    PDX_LOG(logInfo, "checkForITD", "Found ITD parameters: [%s] itdParams=[%ls]", found ? "yes" : "no", itdParams);
    return found;
}

}  // namespace pdx
