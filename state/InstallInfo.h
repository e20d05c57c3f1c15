// Removes what Windows Installer, the engine and the client's package have recorded of the client.
#pragma once

#include <string>

#include "platform/Registry.h"

namespace pdx {

/// Deletes these records in one view of the registry, except the running bundle's, whose key is providerKey.
/// Records of other names stay, but a component that another product shares is deleted too. Returns false, and logs
/// "Failed to open Software registry key" at INFO, if nothing could be done. Needs elevated rights.
bool purgeInstallInfo(RegistryView view, const std::wstring& providerKey);

/// Deletes each subkey whose value `valueName` is one of the product's names, except the subkey providerKey. The value
/// is in the subkey itself, or in its subkey `subKey` if that is not empty. Each deletion is logged at INFO as
/// "Deleting registry tree %ls". On purpose the subkey after a deleted one is not examined, as the walk is by index
/// (enumerateSubKeys). Always returns true.
bool deleteInstallerSubkeys(RegistryKey& key, const std::wstring& providerKey, const std::wstring& subKey,
                            const std::wstring& valueName);

}  // namespace pdx
