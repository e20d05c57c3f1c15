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

/// The value that has this share of all values, which is below 1, below it.
inline double quantile(std::vector<double> values, double share) {
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(static_cast<double>(values.size()) * share);
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

inline double median(std::vector<double> values) { return quantile(std::move(values), 0.5); }

/// The median of so many rounds, in seconds; one more round goes before and does not count.
template <typename Work>
double medianSeconds(int rounds, Work work) {
    work();
    std::vector<double> seconds;
    for (int round = 0; round < rounds; ++round) seconds.push_back(secondsOf(work));
    return median(std::move(seconds));
}

}  // namespace pdx
