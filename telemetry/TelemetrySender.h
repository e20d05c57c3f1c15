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

/// JSON on one line for a log; invalid UTF-8 becomes U+FFFD.
std::string readableLine(const nlohmann::json& value);

/// The longest wait of an urgent event for a lock; after that it is dropped. A thread that crashed may hold the lock,
/// and the user must see the crash box.
inline constexpr std::chrono::milliseconds urgentBound{1000};

/// No caller waits for the network: a worker posts. Each post has all events that were queued during the one before.
/// Until sending is enabled events are held in memory, without a limit, except urgent ones. Nothing is kept on disk,
/// and no post is repeated.
class TelemetrySender {
  public:
    TelemetrySender();
    /// The worker must have been stopped, because it calls the derived class: that class calls stop() in its
    /// destructor.
    virtual ~TelemetrySender();
    TelemetrySender(const TelemetrySender&) = delete;
    TelemetrySender& operator=(const TelemetrySender&) = delete;

    /// The current time in this back end's format.
    [[nodiscard]] virtual std::string timestamp() const = 0;
    /// Returns the event as it will be posted; null or empty drops it. Called on the caller's thread.
    virtual TelemetryQueueItem prepareEvent(const TelemetryEvent& event) = 0;
    /// Posts an array of prepared events, nothing if it is empty. On the worker. An exception loses only this post.
    virtual void send(nlohmann::json batch) = 0;

    /// Starts the worker for a service's address, in the manager's session; does nothing if the worker runs. With a
    /// malformed address all posts fail.
    void start(const std::string& url, const TelemetryManager& manager);
    /// Queues an event. Any thread. An urgent one waits for no lock longer than urgentBound.
    void enqueue(const TelemetryEvent& event);
    /// Sends ordinary events from now on, or holds them again. Any thread.
    void setSendingEnabled(bool enabled);
    /// Makes the worker end after one more pass over the queue. Does not wait.
    void requestStop();
    /// The same, but waits for the end as long as the posts take. Events that are still held are lost, on purpose. Must
    /// not be called on the worker.
    void stop();

  private:
    static unsigned __stdcall run(void* sender);
    void work();
    void makePass(nlohmann::json& pending);

    std::vector<TelemetryQueueItem> queue;
    std::atomic<bool> sendingEnabled{false};

  protected:
    Lock queueLock;
    std::unique_ptr<HttpClient> http;  // used by the worker only, once it runs
    std::string sessionId;             // set before the worker starts, then read on any thread

  private:
    Thread worker;
    Handle stopEvent;
    Handle wakeEvent;
};

}  // namespace pdx
