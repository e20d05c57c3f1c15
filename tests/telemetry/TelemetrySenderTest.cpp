#include "telemetry/TelemetrySender.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <future>
#include <mutex>
#include <thread>

#include "platform/ProcessValue.h"
#include "telemetry/TelemetryManager.h"
#include "tests/platform/CapturedLog.h"

namespace pdx {
namespace {

using nlohmann::json;
using testing::ElementsAre;

/// Keeps what it would post. The attributes of an event are what is posted of it.
class RecordingSender : public TelemetrySender {
  public:
    ~RecordingSender() override { stop(); }

    [[nodiscard]] std::string timestamp() const override { return {}; }
    TelemetryQueueItem prepareEvent(const TelemetryEvent& event) override { return {event.params, event.urgent}; }
    void send(json batch) override {
        if (batch.empty()) return;
        if (onSend) onSend(batch);
        const std::lock_guard guard(lock);
        batches.push_back(std::move(batch));
        changed.notify_all();
    }

    using TelemetrySender::queueLock;
    void queueEvent(json value, bool urgent = false) { enqueue({briskSender, "", std::move(value), urgent}); }
    void begin() {
        start("", TelemetryManager("session", [] { return std::string(); }));
    }
    /// The posts so far, once there are that many.
    std::vector<json> posts(size_t count) {
        std::unique_lock guard(lock);
        changed.wait(guard, [&] { return batches.size() >= count; });
        return batches;
    }
    std::function<void(const json&)> onSend;  ///< on the worker
    std::vector<json> batches;                ///< for everyone once the worker has ended

  private:
    std::mutex lock;
    std::condition_variable changed;
};

TEST(TelemetrySender, PostsEachEventOnceAndInTheOrderOfItsThread) {
    constexpr int threadCount = 8, perThread = 12'500;
    RecordingSender sender;
    sender.begin();
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread)
        threads.emplace_back([&sender, thread] {
            for (int number = 0; number < perThread; ++number) {
                // Events wait by then, and more are added while sending is enabled.
                if (thread == 0 && number == perThread / 3) sender.setSendingEnabled(true);
                sender.queueEvent({thread, number});
            }
        });
    for (std::thread& thread : threads) thread.join();
    sender.stop();

    int next[threadCount] = {};
    int disorder = 0;
    for (const json& batch : sender.batches)
        for (const json& event : batch) disorder += event[1] != next[event[0].get<int>()]++;
    EXPECT_EQ(disorder, 0);
    EXPECT_THAT(next, testing::Each(perThread));
}

TEST(TelemetrySender, DelaysOrdinaryEventsUntilSendingIsEnabled) {
    RecordingSender sender;
    sender.begin();
    for (const int number : {1, 2}) sender.queueEvent(number);
    sender.queueEvent("urgent", true);
    EXPECT_THAT(sender.posts(1), ElementsAre(json{"urgent"}));
    sender.setSendingEnabled(true);
    sender.posts(2);
    sender.queueEvent("later");
    EXPECT_THAT(sender.posts(3), ElementsAre(json{"urgent"}, json{1, 2}, json{"later"}));
}

TEST(TelemetrySender, DropsAnUrgentEventThatWouldWaitForItsOwnThread) {
    RecordingSender sender;
    {
        const std::lock_guard guard(sender.queueLock);  // as that of a thread that crashes in there
        sender.queueEvent("dropped", true);
        ProcessValue<int> value;
        ServiceHolder<int> shared;
        shared.set(std::make_shared<int>(1));
        const auto one = [] { return 1; };
        const auto inside = [&] { return value.get(one, std::chrono::milliseconds(1)) ? 2 : 3; };
        EXPECT_EQ(value.get(inside), 3) << "no value yet for the thread that makes it";
        EXPECT_EQ(*value.get(one, urgentBound), 3);
        EXPECT_EQ(*shared.get(urgentBound), 1);
    }
    sender.begin();
    sender.queueEvent("sent", true);
    EXPECT_THAT(sender.posts(1), ElementsAre(json{"sent"}));
}

TEST(TelemetrySender, PostsQueuedEventsAtTheStopAndRestarts) {
    RecordingSender sender;
    sender.setSendingEnabled(true);
    sender.queueEvent(1);  // before there is a worker
    sender.begin();
    sender.posts(1);
    sender.queueEvent(2);
    for (const json& nothing : {json(), json::object(), json::array()}) sender.queueEvent(nothing, true);
    sender.stop();
    sender.begin();
    sender.queueEvent(3);
    sender.stop();
    EXPECT_THAT(sender.batches, ElementsAre(json{1}, json{2}, json{3}));
}

TEST(TelemetrySender, LosesOnlyAPostThatCannotBeWritten) {
    const CapturedLog log;
    std::promise<void> reached;
    RecordingSender sender;
    sender.onSend = [&](const json& batch) {
        if (batch[0] == "\xFF") reached.set_value();
        (void)batch.dump();
    };
    sender.begin();
    sender.queueEvent(1);
    sender.queueEvent("\xFF", true);
    reached.get_future().wait();  // that batch is closed
    sender.queueEvent(2, true);
    sender.posts(1);
    sender.setSendingEnabled(true);
    sender.stop();
    EXPECT_THAT(sender.batches, ElementsAre(json{2}, json{1}));
    EXPECT_THAT(log.takeTexts(),
                ElementsAre(testing::StartsWith("0 TelemetrySender::work Lost a post of telemetry: ")));
}

}  // namespace
}  // namespace pdx
