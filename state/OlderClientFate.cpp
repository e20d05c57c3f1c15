#include "state/OlderClientFate.h"

#include "config/Settings.h"
#include "state/OlderClient.h"

namespace pdx {

bool isOlderClientTo(OlderClientFate fate) {
    const bool migration = getConfigBool("app.meridian.enableMigration", false);
    const bool prompt = getConfigBool("app.meridian.promptBastionUninstall", false);
    return olderClientFate(migration, prompt) == fate && isBastionInstalled();
}

}  // namespace pdx
