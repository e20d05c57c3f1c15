#include "state/OlderClient.h"

#include "platform/Registry.h"
#include "platform/RegistryPaths.h"

namespace pdx {

bool isBastionInstalled() {
    // The spelling is the older client's own.
    return !toText(RegistryKey::localMachine(view32).getSubKeyValue(olderClientKey, L"InstallSuccesfull")).empty();
}

}  // namespace pdx
