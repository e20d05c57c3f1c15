#include "telemetry/TelemetrySender.h"

#include <mutex>
#include <utility>

#include "platform/Errors.h"
#include "platform/Log.h"
#include "telemetry/rules/TelemetryBatch.h"
#include "telemetry/TelemetryManager.h"

namespace pdx {

std::string readableLine(const nlohmann::json& value) {
    return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

TelemetrySender::TelemetrySender()
    : stopEvent(CreateEventW(nullptr, TRUE, FALSE, nullptr)), wakeEvent(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}

TelemetrySender::~TelemetrySender() { stop(); }

void TelemetrySender::start(const std::string& url, const TelemetryManager& manager) {
    if (worker.id() != 0) return;
    http = std::make_unique<HttpClient>(parseUrl(url));
    sessionId = manager.session();
    ResetEvent(stopEvent.get());
    if (!worker.start(run, this))
        PDX_LOG(logError, "TelemetrySender::start", "Failed to start the worker that posts telemetry: %s",
                describeError(HRESULT_FROM_WIN32(GetLastError())));
}

void TelemetrySender::enqueue(const TelemetryEvent& event) {
    TelemetryQueueItem item = prepareEvent(event);
    if (item.event.empty()) return;
    bool first = false;
    {
        std::unique_lock guard(queueLock, std::defer_lock);
        if (!event.urgent)
            guard.lock();
        else if (!guard.try_lock_for(urgentBound))
            return;
        first = queue.empty();
        queue.push_back(std::move(item));
    }
    // The first event wakes the worker, which takes all that are queued by then.
    if (first) SetEvent(wakeEvent.get());
}

void TelemetrySender::setSendingEnabled(bool enabled) {
    sendingEnabled = enabled;
    SetEvent(wakeEvent.get());
}

void TelemetrySender::requestStop() { SetEvent(stopEvent.get()); }

void TelemetrySender::stop() {
    requestStop();
    worker.join();
}

unsigned __stdcall TelemetrySender::run(void* sender) {
    static_cast<TelemetrySender*>(sender)->work();
    return 0;
}

void TelemetrySender::work() {
    nlohmann::json pending = nlohmann::json::array();
    const HANDLE events[] = {wakeEvent.get(), stopEvent.get()};
    for (bool stops = false; !stops;) {
        // The stop event or a failed wait: one more pass.
        stops = WaitForMultipleObjects(static_cast<DWORD>(std::size(events)), events, FALSE, INFINITE) != WAIT_OBJECT_0;
        try {
            makePass(pending);
        } catch (const std::exception& error) {
            PDX_LOG(logError, "TelemetrySender::work", "Lost a post of telemetry: %s", error.what());
        }
    }
}

void TelemetrySender::makePass(nlohmann::json& pending) {
    std::vector<TelemetryQueueItem> items;
    {
        const std::lock_guard guard(queueLock);
        items.swap(queue);
    }
    send(takeBatch(pending, std::move(items), sendingEnabled));
}

}  // namespace pdx
