#include "bench/Benchmarks.h"
#include "bench/PackageLog.h"
#include "bench/ProcessMemory.h"
#include "bench/StartedLibrary.h"

namespace pdx {

namespace {

constexpr size_t messageCount = 100000;
constexpr int messageRounds = 7;
constexpr double messagesAim = 300000;
/// The library keeps the last message of each kind, so each pass over the same log should end with the same memory in
/// use. The bound allows for the rounding of the heaps.
constexpr double flatBound = 64 * 1024;

/// A line with its data as the engine passes it.
struct Call {
    const PackageLogLine* line;
    std::vector<const wchar_t*> data;
};

std::vector<Call> callsOf(const std::vector<PackageLogLine>& log) {
    std::vector<Call> calls;
    for (const auto& line : log) {
        calls.push_back({&line, {}});
        for (const auto& text : line.data) calls.back().data.push_back(text.c_str());
    }
    return calls;
}

}  // namespace

Measurements measureMessages(const std::filesystem::path& library) {
    const auto log = makePackageLog(messageCount);
    auto calls = callsOf(log);
    size_t characters = 0;
    for (const auto& line : log) characters += line.text.size();

    StartedLibrary started(library);
    started.start();
    started.application().OnExecutePackageBegin(L"PalisadeApp.msi", TRUE);
    const auto pass = [&] {
        for (auto& call : calls)
            started.application().OnExecuteMsiMessage(L"PalisadeApp.msi", call.line->type, 0, call.line->text.c_str(),
                                                      static_cast<DWORD>(call.data.size()), call.data.data(), 0);
    };
    pass();
    const auto before = processMemory();
    const double seconds = medianSeconds(messageRounds, pass);
    const auto after = processMemory();
    const auto growth = [](size_t now, size_t then) { return static_cast<double>(now) - static_cast<double>(then); };
    return {
        {"messages_per_second", messageCount / seconds, "1/s", "messages through OnExecuteMsiMessage",
         atLeast(messagesAim)},
        {"message", seconds / messageCount * 1e9, "ns", "one message through OnExecuteMsiMessage"},
        {"message_length", static_cast<double>(characters) / messageCount, "characters", "mean length of a message"},
        {"messages_heap_growth", growth(after.heapInUse, before.heapInUse), "bytes",
         "heap taken by " + std::to_string((messageRounds + 1) * messageCount) + " messages", atMost(flatBound)},
        {"messages_working_set_growth", growth(after.workingSet, before.workingSet), "bytes",
         "working set taken by as many messages"},
    };
}

}  // namespace pdx
