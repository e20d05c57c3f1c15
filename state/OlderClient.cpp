#include "state/OlderClient.h"

#include "platform/Registry.h"
#include "platform/RegistryPaths.h"
#include "state/rules/MeridianMessages.h"
#include "telemetry/TelemetryManager.h"

namespace pdx {

bool isBastionInstalled() {
    // The spelling is the older client's own.
    return !machineText(view32, olderClientKey, L"InstallSuccesfull").empty();
}

void sendMeridianMessageEvent(const std::string& id, const std::string& destination, const std::string& page,
                              const std::string& status, const std::string& trackingTag) {
    sendTelemetry(tallySender, "message", meridianMessage(id, destination, page, status, trackingTag), false);
}

}  // namespace pdx
