#include "state/OlderClient.h"

#include "platform/Registry.h"

namespace pdx {

bool isBastionInstalled() {
    // The spelling is the older client's own.
    return !toText(RegistryKey::localMachine(view32).getSubKeyValue(L"Software\\Bastion", L"InstallSuccesfull"))
                .empty();
}

}  // namespace pdx
