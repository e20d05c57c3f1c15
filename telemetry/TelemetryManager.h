// The telemetry of a run: one session, two back ends.
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
    /// The session is that of createSessionId. The machine's hash is computed once for the process, on the Brisk
    /// sender's worker before its first post.
    TelemetryManager(std::string session, MachineHash machineHash);
    virtual ~TelemetryManager();
    TelemetryManager(const TelemetryManager&) = delete;
    TelemetryManager& operator=(const TelemetryManager&) = delete;

    /// The identifier of this install, the same in all of its processes. It is the environment variable
    /// PDX_INSTALLER_SESSION_ID, or a new one, which is set there for child processes. Logs "Installer session: %s".
    static std::string createSessionId();

    /// Makes and starts the senders with the addresses in telemetry.tally.url and telemetry.brisk.url. Earlier events
    /// are dropped; later ones are held until sending is enabled.
    virtual void start();
    /// Passes the event to its sender; drops one with an unknown sender. Any thread; never waits for the network.
    virtual void send(const TelemetryEvent& event);
    /// Has no effect before start().
    virtual void setSendingEnabled(bool enabled);
    /// Makes both workers end after one more post. Does not wait.
    virtual void requestStop();
    /// Ends both workers, each after one last post, and waits. Later events are not sent.
    virtual void stop();
    /// The current time as the sender of that number writes it; empty for any other number.
    [[nodiscard]] static std::string timestamp(int32_t sender);
    /// Keeps alive the manager that a reload has replaced: destroying that one would wait for its posts.
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

/// The manager, null until the application object has made it. Must be cleared before the library is unmapped, because
/// its workers run in the library.
extern ServiceHolder<TelemetryManager> g_telemetry;

/// Sends an event through a sender (briskSender or tallySender). params is ignored unless it is an object; its text is
/// UTF-8. Does nothing without a manager; no failure reaches the caller. Any thread.
void sendTelemetry(int32_t sender, std::string name, nlohmann::json params, bool urgent) noexcept;

/// Sends the held events, and from now on each new one: the run needs no consent, or the user has given it. Any thread.
void enableTelemetry();

/// Frees the manager and the senders' identities when the library is unmapped in a process that continues. The workers
/// must have been stopped.
void releaseTelemetry();

}  // namespace pdx
