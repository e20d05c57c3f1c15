// Removing the client's package from Windows Installer's own records.
#pragma once

#include <string>

#include "platform/Registry.h"

namespace pdx {

/// Deletes the client's records in one view of the registry; the running bundle's own, whose key is providerKey, stays.
/// Records of other names stay, but a component that another product shares is deleted too. Returns false, and logs
/// "Failed to open Software registry key" at INFO, where nothing could be done. Needs elevated rights.
bool purgeInstallInfo(RegistryView view, const std::wstring& providerKey);

/// Deletes each subkey of the key whose text valueName is one of the product's names; the one called providerKey stays.
/// The text is in the subkey itself, or in its subkey `subKey` if one is named. Each is logged at INFO as "Deleting
/// registry tree %ls". The subkey after a deleted one is not examined. Always true.
bool deleteInstallerSubkeys(RegistryKey& key, const std::wstring& providerKey, const std::wstring& subKey,
                            const std::wstring& valueName);

}  // namespace pdx
