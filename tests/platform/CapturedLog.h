// The log lines of one test.
#pragma once

#include <memory>
#include <mutex>
#include <ostream>
#include <string>
#include <vector>

#include "platform/Log.h"

namespace pdx {

struct LogEntry {
    int32_t level;
    std::string function;
    std::string message;

    bool operator==(const LogEntry&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const LogEntry& entry) {
    return out << entry.level << " (" << entry.function << ") " << entry.message;
}

/// Takes the logger's place while it lives.
class CapturedLog {
  public:
    CapturedLog() { g_logger.set(sink); }
    ~CapturedLog() { g_logger.clear(); }
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;

    /// What was logged since the last call.
    [[nodiscard]] std::vector<LogEntry> take() const {
        const std::lock_guard guard(sink->lock);
        return std::exchange(sink->entries, {});
    }

    /// The same as "level function message".
    [[nodiscard]] std::vector<std::string> takeTexts() const {
        std::vector<std::string> texts;
        for (const LogEntry& entry : take())
            texts.push_back(std::to_string(entry.level) + " " + entry.function + " " + entry.message);
        return texts;
    }

  private:
    struct Sink : Logger {
        void write(int32_t level, const char* function, int32_t, const char* message) override {
            const std::lock_guard guard(lock);
            entries.push_back({level, function, message});
        }
        Lock lock;
        std::vector<LogEntry> entries;
    };
    std::shared_ptr<Sink> sink = std::make_shared<Sink>();
};

}  // namespace pdx
