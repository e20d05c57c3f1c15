// The support layer's retries: for each of two kinds, the current package and its count of tries.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace pdx {

enum class RetryKind { cache = 0, execute = 1 };

/// Decides whether a failed package is tried again. The application sets the maximum to 0 on purpose: nothing is
/// retried here, and every real retry is a download's (core/Download.h).
class RetrySupport {
  public:
    using Sleep = std::function<void(uint32_t milliseconds)>;

    RetrySupport(uint32_t maximumRetries, uint32_t delayMilliseconds, Sleep sleepFunction);

    /// For the same package and payload as before, increments the count and sleeps the delay. A new one starts at 0; an
    /// empty package clears the kind. Clears the last error in every case.
    void start(RetryKind kind, std::wstring_view package, std::wstring_view payload);
    /// Stores an error's code for the kind that holds the package.
    void errorOccurred(std::wstring_view package, uint32_t code);
    /// Returns IDRETRY for another try, else 0; an empty package clears the kind.
    int32_t end(RetryKind kind, std::wstring_view package, std::wstring_view payload, int32_t status);

  private:
    struct Entry {
        std::wstring package;
        std::wstring payload;
        uint32_t count = 0;
        uint32_t lastError = 0;
    };
    Entry& entryOf(RetryKind kind) { return entries[static_cast<size_t>(kind)]; }

    std::array<Entry, 2> entries;
    uint32_t maximum;
    uint32_t delay;
    Sleep sleep;
};

/// Whether a failed status of that kind is worth another try; lastError is the last Windows Installer error.
bool isRetriable(RetryKind kind, int32_t status, uint32_t lastError);

}  // namespace pdx
