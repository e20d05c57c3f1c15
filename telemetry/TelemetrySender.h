// A back end of telemetry: a queue that any thread fills, and a worker thread that posts what is queued.
#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "platform/Handles.h"
#include "platform/HttpClient.h"
#include "platform/Lock.h"
#include "platform/Thread.h"
#include "telemetry/rules/TelemetryEvent.h"

namespace pdx {

class TelemetryManager;

/// JSON on one line for a log, in which bytes that are no UTF-8 become U+FFFD.
std::string readableLine(const nlohmann::json& value);

/// An urgent event waits so long for each lock, and is then dropped. A thread that crashed may hold the lock, and
/// nothing may keep the crash from the user.
inline constexpr std::chrono::milliseconds urgentBound{1000};

/// No caller waits for the network: the worker posts, each time all that was queued during the post before. Until
/// sending is enabled events are held in memory, except urgent ones. Nothing is kept on disk, no post is repeated, and
/// there is no limit to what is held.
class TelemetrySender {
  public:
    TelemetrySender();
    /// The worker has to be stopped by then: a derived class calls stop() in its own destructor. Until the worker has
    /// ended it calls operations of that class.
    virtual ~TelemetrySender();
    TelemetrySender(const TelemetrySender&) = delete;
    TelemetrySender& operator=(const TelemetrySender&) = delete;

    /// The current time as this back end writes it.
    [[nodiscard]] virtual std::string timestamp() const = 0;
    /// The event as it will be posted, null or empty if it is to be dropped. On the caller's thread.
    virtual TelemetryQueueItem prepareEvent(const TelemetryEvent& event) = 0;
    /// Posts an array of prepared events, nothing if it is empty. On the worker. What it throws costs this one post.
    virtual void send(nlohmann::json batch) = 0;

    /// Starts the worker on a service's address, in the manager's session; nothing happens if there is one. An address
    /// that is none makes a sender whose posts all fail.
    void start(const std::string& url, const TelemetryManager& manager);
    /// Queues an event. Any thread. An urgent one waits for no lock longer than urgentBound.
    void enqueue(const TelemetryEvent& event);
    /// Sends ordinary events from now on, or holds them again. Any thread.
    void setSendingEnabled(bool enabled);
    /// Makes the worker end after one more pass over the queue, and does not wait for it.
    void requestStop();
    /// The same, and waits for the end, as long as its posts take. What is held back then is lost, on purpose. Not to
    /// be called on the worker.
    void stop();

  private:
    static unsigned __stdcall run(void* sender);
    void work();
    void makePass(nlohmann::json& pending);

    std::vector<TelemetryQueueItem> queue;
    std::atomic<bool> sendingEnabled{false};

  protected:
    Lock queueLock;
    std::unique_ptr<HttpClient> http;  // of the worker, once it runs
    std::string sessionId;             // set before the worker starts, and only read from then on, on any thread

  private:
    Thread worker;
    Handle stopEvent;
    Handle wakeEvent;
};

}  // namespace pdx
