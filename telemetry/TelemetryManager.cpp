#include "telemetry/TelemetryManager.h"

#include <windows.h>

#include <exception>
#include <utility>

#include "config/Settings.h"
#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/Uuid.h"

namespace pdx {
namespace {

constexpr const wchar_t* sessionVariable = L"PDX_INSTALLER_SESSION_ID";

}  // namespace

constinit ServiceHolder<TelemetryManager> g_telemetry;

TelemetryManager::TelemetryManager(std::string session, MachineHash hash)
    : sessionId(std::move(session)), machineHash(hash) {}

TelemetryManager::~TelemetryManager() { TelemetryManager::stop(); }

std::string TelemetryManager::createSessionId() {
    std::string session = toUtf8(getEnvironmentText(sessionVariable));
    if (session.empty()) {
        session = newUuidString();
        SetEnvironmentVariableW(sessionVariable, toWide(session).c_str());
    }
    PDX_LOG(logInfo, "TelemetryManager::createSessionId", "Installer session: %s", session);
    return session;
}

void TelemetryManager::start() {
    if (!tally) tally = std::make_unique<TallyTelemetrySender>();
    tally->start(getConfigString("telemetry.tally.url"), *this);
    if (!brisk) brisk = std::make_unique<BriskTelemetrySender>(machineHash);
    brisk->start(getConfigString("telemetry.brisk.url"), *this);
}

TelemetrySender* TelemetryManager::senderOf(int32_t number) const {
    if (number == tallySender) return tally.get();
    if (number == briskSender) return brisk.get();
    return nullptr;
}

void TelemetryManager::send(const TelemetryEvent& event) {
    if (TelemetrySender* const sender = senderOf(event.sender)) sender->enqueue(event);
}

void TelemetryManager::setSendingEnabled(bool enabled) {
    for (TelemetrySender* const sender : {tally.get(), brisk.get()})
        if (sender) sender->setSendingEnabled(enabled);
}

void TelemetryManager::requestStop() {
    for (TelemetrySender* const sender : {tally.get(), brisk.get()})
        if (sender) sender->requestStop();
}

void TelemetryManager::stop() {
    // Both last posts are sent at the same time.
    TelemetryManager::requestStop();
    for (TelemetrySender* const sender : {tally.get(), brisk.get()})
        if (sender) sender->stop();
}

std::string TelemetryManager::timestamp(int32_t sender) {
    if (sender == tallySender) return tallyTimestamp();
    if (sender == briskSender) return briskTimestamp();
    return {};
}

void sendTelemetry(int32_t sender, std::string name, nlohmann::json params, bool urgent) noexcept {
    try {
        const auto manager = urgent ? g_telemetry.get(urgentBound) : g_telemetry.get();
        if (manager) manager->send({sender, std::move(name), std::move(params), urgent, false});
    } catch (const std::exception&) {
        // Out of memory: the event is lost, and the run continues.
    }
}

void enableTelemetry() {
    if (const auto manager = g_telemetry.get()) manager->setSendingEnabled(true);
}

void releaseTelemetry() {
    g_telemetry.clear();
    releaseBriskIdentity();
    releaseTallyIdentity();
}

}  // namespace pdx
