#include <sstream>
#include <stdexcept>
#include <utility>

#include "bench/Benchmarks.h"
#include "bench/ProcessMemory.h"
#include "config/Settings.h"
#include "platform/HttpClient.h"
#include "telemetry/InstallTelemetry.h"
#include "telemetry/MachineIdentity.h"
#include "telemetry/rules/BriskEvent.h"
#include "telemetry/TelemetryManager.h"

namespace pdx {

namespace {

using nlohmann::json;

constexpr int stalledEvents = 20000;
/// Seconds in which the host does not answer; longer than those events take.
constexpr int silence = 5;
constexpr int rateEvents = 10000;
constexpr int rateRounds = 3;
constexpr int heldEvents = 100000;
constexpr int identityRounds = 5;

constexpr const char* eventName = "inst.dnld.strt";
const json attributes = {{"action", "install"},
                         {"download_id", "7d1c2b3a-4e5f-4607-8192-a3b4c5d6e7f8"},
                         {"package", "PalisadeApp.msi"},
                         {"size", 104857600}};

/// Telemetry of this process during its lifetime, with the Brisk service at a path of the host.
class HostedTelemetry {
  public:
    HostedTelemetry(std::string serviceHost, std::string servicePath, const std::string& query = {})
        : host(std::move(serviceHost)), path(std::move(servicePath)) {
        std::istringstream settings("[telemetry]\nbrisk.url = '" + host + path + "?body=ok" + query + "'\n");
        g_config.set(std::make_shared<ConfigMap>(LoadConfigStream(settings)));
        const auto manager = std::make_shared<TelemetryManager>("a-session", getMachineHash);
        manager->start();
        g_telemetry.set(manager);
    }
    HostedTelemetry(const HostedTelemetry&) = delete;
    HostedTelemetry& operator=(const HostedTelemetry&) = delete;
    ~HostedTelemetry() {
        releaseTelemetry();
        g_config.clear();
    }

    /// All posts, after waiting for that many.
    [[nodiscard]] json posts(size_t count) const {
        HttpClient client(parseUrl(host + "/requests?path=" + path + "&count=" + std::to_string(count)));
        client.get();
        const auto bytes = client.readResponse(SIZE_MAX);
        json found = json::parse(bytes, nullptr, false);
        if (!found.is_array() || found.size() < count) throw std::runtime_error("the service gets no telemetry");
        return found;
    }
    /// Sends an event that is posted at once and waits for that many posts. By then the worker has handled all earlier
    /// events.
    void sendUrgently(size_t posted) const {
        sendTelemetry(briskSender, eventName, attributes, true);
        (void)posts(posted);
    }

  private:
    std::string host;
    std::string path;
};

/// Seconds, each of one call.
struct CallCosts {
    std::vector<double> sending;
    std::vector<double> building;
};

CallCosts callCostsWhileStalled(const std::string& host) {
    const HostedTelemetry telemetry(host, "/bench/stalled", "&delay=" + std::to_string(silence));
    enableTelemetry();
    telemetry.sendUrgently(1);
    const json header = briskHeader({"AMD64", "US", "production", {}, "en", getMachineHash(), "Win 10", "a-session"});
    CallCosts costs;
    std::vector<json> built;
    built.reserve(stalledEvents);
    for (int i = 0; i < stalledEvents; ++i) {
        json params = attributes;
        const TelemetryEvent event{briskSender, eventName, attributes};
        // In turn, so that other load of the machine affects both alike.
        costs.building.push_back(
            secondsOf([&] { built.push_back(briskEvent(event, briskTimestamp(), false, header)); }));
        costs.sending.push_back(secondsOf([&] { sendTelemetry(briskSender, eventName, std::move(params), false); }));
    }
    if (telemetry.posts(1).size() != 1) throw std::runtime_error("the service answered too early");
    // The queued events are not needed.
    g_telemetry.get()->setSendingEnabled(false);
    return costs;
}

/// Seconds from the first call to the answer to the last post.
double secondsToDeliver(const std::string& host, int round) {
    const HostedTelemetry telemetry(host, "/bench/rate/" + std::to_string(round));
    enableTelemetry();
    telemetry.sendUrgently(1);  // the connection is open
    const double seconds = secondsOf([] {
        for (int i = 0; i < rateEvents; ++i) sendTelemetry(briskSender, eventName, attributes, false);
        g_telemetry.get()->stop();
    });
    size_t arrived = 0;
    for (const json& post : telemetry.posts(1)) arrived += post["body"].size();
    if (arrived != rateEvents + 1) throw std::runtime_error("events were lost on their way");
    return seconds;
}

/// Bytes of heap that the events take in the queue.
double heldHeap(const std::string& host) {
    const HostedTelemetry telemetry(host, "/bench/held");
    telemetry.sendUrgently(1);
    const size_t before = processMemory().heapInUse;
    for (int i = 0; i < heldEvents; ++i) sendTelemetry(briskSender, eventName, attributes, false);
    telemetry.sendUrgently(2);
    return static_cast<double>(processMemory().heapInUse) - static_cast<double>(before);
}

void gatherInstallTelemetry() {
    static constexpr const wchar_t* folder = L"C:\\Program Files\\Palisade";
    if (installTelemetry({briskTimestamp(), false, folder, folder}).driveType.empty())
        throw std::runtime_error("the system reports no disks");
}

}  // namespace

Measurements measureTelemetry(const std::string& host) {
    const double hash = medianSeconds(identityRounds, getMachineHash);
    const double install = medianSeconds(identityRounds, gatherInstallTelemetry);
    const CallCosts costs = callCostsWhileStalled(host);
    int round = 0;
    const double delivery = medianOf(rateRounds, [&] { return secondsToDeliver(host, round++); });
    const double heap = heldHeap(host);
    constexpr double rare = 0.999;
    const double send = median(costs.sending);
    const double rareSend = quantile(costs.sending, rare);
    const double build = median(costs.building);
    const double rareBuild = quantile(costs.building, rare);
    return {
        {"send_telemetry", send * 1e9, "ns", "sendTelemetry with a stalled network, median"},
        {"send_telemetry_rare", rareSend * 1e9, "ns", "sendTelemetry with a stalled network, 99.9th percentile"},
        {"build_event", build * 1e9, "ns", "the JSON of sendTelemetry's event alone, median"},
        {"build_event_rare", rareBuild * 1e9, "ns", "the JSON of sendTelemetry's event alone, 99.9th percentile"},
        {"send_telemetry_ratio", send / build, "x", "sendTelemetry to its event's JSON alone, median"},
        {"events_per_second", rateEvents / delivery, "1/s", "events through a sender to a local service"},
        {"held_heap", heap, "bytes", "heap taken by " + std::to_string(heldEvents) + " events held back"},
        {"held_heap_event", heap / heldEvents, "bytes", "one event held back"},
        {"machine_hash", hash * 1000, "ms", "getMachineHash, median"},
        {"install_telemetry", install * 1000, "ms", "installTelemetry, median"},
    };
}

}  // namespace pdx
