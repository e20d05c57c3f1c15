// What a measurement is, and the clock and statistics that all of them share.
#pragma once

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace pdx {

struct Measurement {
    std::string name;  ///< also the key in the JSON file, "log_line"
    double value;
    std::string unit;
    std::string meaning;  ///< for people
    /// A bound that the value is meant to keep. Not an assertion: machines differ.
    struct Aim {
        double bound;
        bool atLeast;
    };
    std::optional<Aim> aim = {};

    [[nodiscard]] bool aimMet() const { return !aim || (aim->atLeast ? value >= aim->bound : value <= aim->bound); }
};
using Measurements = std::vector<Measurement>;

/// Seconds that the work takes.
template <typename Work>
double secondsOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The median of so many rounds, in seconds; one more round goes before and does not count.
template <typename Work>
double medianSeconds(int rounds, Work work) {
    work();
    std::vector<double> seconds;
    for (int round = 0; round < rounds; ++round) seconds.push_back(secondsOf(work));
    return median(std::move(seconds));
}

}  // namespace pdx
