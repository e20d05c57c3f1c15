// A measurement, and the clock and statistics of all measurements.
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
    std::string meaning;  ///< for the printed table
    /// A bound for the value. Not an assertion, because machines differ.
    struct Aim {
        double bound;
        bool atLeast;
    };
    std::optional<Aim> aim = {};

    [[nodiscard]] bool aimMet() const { return !aim || (aim->atLeast ? value >= aim->bound : value <= aim->bound); }
};
using Measurements = std::vector<Measurement>;

inline Measurement::Aim atMost(double bound) { return {bound, false}; }
inline Measurement::Aim atLeast(double bound) { return {bound, true}; }

/// The duration of the work in seconds.
template <typename Work>
double secondsOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The value that a share of all values, below 1, is below.
inline double quantile(std::vector<double> values, double share) {
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(static_cast<double>(values.size()) * share);
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

inline double median(std::vector<double> values) { return quantile(std::move(values), 0.5); }

/// The median of the values that so many rounds give.
template <typename Measure>
double medianOf(int rounds, Measure measure) {
    std::vector<double> values;
    for (int round = 0; round < rounds; ++round) values.push_back(measure());
    return median(std::move(values));
}

/// The median duration of the work in seconds, after one round that does not count.
template <typename Work>
double medianSeconds(int rounds, Work work) {
    work();
    return medianOf(rounds, [&] { return secondsOf(work); });
}

}  // namespace pdx
