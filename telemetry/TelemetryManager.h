// What the installer sends to its maker about a run: one session, two back ends.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/ServiceHolder.h"
#include "telemetry/BriskTelemetrySender.h"
#include "telemetry/TallyTelemetrySender.h"

namespace pdx {

/// Owns the two senders and the session's identifier. Its destructor waits for one last post of each.
class TelemetryManager {
  public:
    /// The session is that of createSessionId. The machine's hash is computed once a process, before the first post to
    /// the Brisk service and on its worker.
    TelemetryManager(std::string session, MachineHash machineHash);
    virtual ~TelemetryManager();
    TelemetryManager(const TelemetryManager&) = delete;
    TelemetryManager& operator=(const TelemetryManager&) = delete;

    /// The identifier of this install, the same over all of its processes. It is that of the environment variable
    /// PDX_INSTALLER_SESSION_ID, else a new one, which is then set there for child processes. Logs "Installer session:
    /// %s".
    static std::string createSessionId();

    /// Makes and starts the senders on the addresses of telemetry.tally.url and telemetry.brisk.url. Until then events
    /// are dropped; from then on they are held until sending is enabled.
    virtual void start();
    /// Passes the event to its sender; one for no sender is dropped. Any thread; never waits for the network.
    virtual void send(const TelemetryEvent& event);
    /// Of no effect before start.
    virtual void setSendingEnabled(bool enabled);
    /// Makes both workers end after one more post, and does not wait for it.
    virtual void requestStop();
    /// Ends both workers, each after one last post, and waits for that. Later events are not sent.
    virtual void stop();
    /// The current time as the sender of that number writes it; empty for any other number.
    [[nodiscard]] static std::string timestamp(int32_t sender);
    /// Keeps the manager of the object before a reload as long as this one. Destroying it blocks on its posts.
    void keepEarlier(std::shared_ptr<TelemetryManager> manager) { kept = std::move(manager); }
    [[nodiscard]] const std::shared_ptr<TelemetryManager>& earlier() const { return kept; }
    [[nodiscard]] const std::string& session() const { return sessionId; }

  private:
    [[nodiscard]] TelemetrySender* senderOf(int32_t number) const;

    std::shared_ptr<TelemetryManager> kept;
    std::string sessionId;
    std::unique_ptr<TelemetrySender> tally;
    std::unique_ptr<TelemetrySender> brisk;
    MachineHash machineHash;
};

/// The manager, null until the application object has made it. Has to be cleared before the library is unmapped: its
/// workers run in it.
extern ServiceHolder<TelemetryManager> g_telemetry;

/// Sends an event by a sender (briskSender or tallySender); params counts only if it is an object, and its text is
/// UTF-8. Nothing happens without a manager, and no failure reaches the caller. Any thread.
void sendTelemetry(int32_t sender, std::string name, nlohmann::json params, bool urgent) noexcept;

/// Sends the held events, and all later ones at once: the run needs no consent, or the user has continued. Any thread.
void enableTelemetry();

/// Frees the manager and what was looked up once for the process, when the library is unmapped in a process that
/// continues. The workers have been stopped by then.
void releaseTelemetry();

}  // namespace pdx
