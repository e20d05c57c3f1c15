// What this process holds of the system: its threads, and its handles by the type of the object.
#pragma once

#include <map>
#include <string>

namespace pdx {

struct ProcessCensus {
    size_t threads = 0;
    std::map<std::string, size_t> handles;  ///< by type name, such as "Event"

    [[nodiscard]] size_t handleCount() const;
    /// No more threads than the other, and no more handles of any type.
    [[nodiscard]] bool within(const ProcessCensus& other) const;
    /// What there is more than in the other: "threads +1, Event +2"; empty if within.
    [[nodiscard]] std::string excessOver(const ProcessCensus& other) const;
};

/// Counts now, in the system's handle table: GetProcessHandleCount answers 0 under Wine.
ProcessCensus takeCensus();

/// The handles of any process.
size_t handleCountOf(unsigned long processId);

/// Counts again until it is within the other, at most for the time given (milliseconds): threads that have been joined
/// leave the system's lists a little later.
ProcessCensus takeCensusWithin(const ProcessCensus& other, unsigned long bound);

}  // namespace pdx
