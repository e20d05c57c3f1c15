// What a fuzz target is: a function that takes any bytes, and properties that have to hold for all of them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace pdx::fuzz {

struct Target {
    const char* name;  ///< of its folder of seeds too
    void (*run)(std::string_view input);
};

/// All targets.
std::span<const Target> targets();

/// Ends the program with the broken property's name, so that the driver keeps the input.
void require(bool holds, const char* property);

/// Cuts fields off the front of an input, which ends in empty ones.
class Input {
  public:
    explicit Input(std::string_view bytes) : left(bytes) {}

    /// All bytes before the next line feed.
    std::string_view field() {
        const std::string_view taken = left.substr(0, left.find('\n'));
        left.remove_prefix(std::min(taken.size() + 1, left.size()));
        return taken;
    }
    uint8_t byte() {
        if (left.empty()) return 0;
        const char first = left.front();
        left.remove_prefix(1);
        return static_cast<uint8_t>(first);
    }
    std::string_view rest() { return left; }

  private:
    std::string_view left;
};

}  // namespace pdx::fuzz
