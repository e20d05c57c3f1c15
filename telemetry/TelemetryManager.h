// What the installer tells its maker about a run: one session, two back ends.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/ProcessSlot.h"
#include "telemetry/BriskTelemetrySender.h"
#include "telemetry/TallyTelemetrySender.h"

namespace pdx {

/// Owns the two senders and the session's identifier. Its destructor waits for one last post of each.
class TelemetryManager {
  public:
    /// The session is that of createSessionId. The machine's hash is asked for once a process, ahead of the first post
    /// to the Brisk service and on its worker.
    TelemetryManager(std::string session, MachineHash machineHash);
    virtual ~TelemetryManager();
    TelemetryManager(const TelemetryManager&) = delete;
    TelemetryManager& operator=(const TelemetryManager&) = delete;

    /// The identifier of this install, the same over all of its processes: that of the environment variable
    /// PDX_INSTALLER_SESSION_ID, as it stands, else a new one, which is then put there for the children. Logs
    /// "Installer session: %s".
    static std::string createSessionId();

    /// Makes and starts the senders on the addresses of telemetry.tally.url and telemetry.brisk.url. Until then events
    /// are thrown away; from then on they are held back until sending is enabled.
    virtual void start();
    /// Hands the event to its sender; one for no sender disappears. Any thread; never waits for the network.
    virtual void send(const TelemetryEvent& event);
    /// Of no effect before start.
    virtual void setSendingEnabled(bool enabled);
    /// Tells both workers to end after one more post, and does not wait for it.
    virtual void requestStop();
    /// Ends both workers, each after one last post, and waits for that. Events that come later are not sent.
    virtual void stop();
    /// The current time as the sender of that number writes it; empty for any other number.
    [[nodiscard]] static std::string timestamp(int32_t sender);
    /// Keeps the manager of an object ahead of a reload until this one goes: to let go of it is to wait for its posts.
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
extern ProcessSlot<TelemetryManager> g_telemetry;

/// Tells an event to a sender (briskSender or tallySender); params counts only if it is an object, and its text is
/// UTF-8. Nothing happens without a manager, and nothing here fails towards the caller. Any thread.
void sendTelemetry(int32_t sender, std::string name, nlohmann::json params, bool urgent) noexcept;

/// Lets what is held back go out, and all that follows: the run goes on without asking, or the user has gone on. Any
/// thread.
void enableTelemetry();

/// Lets go of the manager and of what was found out once for the process, when the library is unmapped in a process
/// that goes on. The workers have been stopped by then.
void releaseTelemetry();

}  // namespace pdx
