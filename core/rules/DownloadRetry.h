// The automatic retries of a failed download, which the user does not see.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

#include "platform/rules/ProgramErrors.h"

namespace pdx {

/// Seconds to wait before a retry, by the number of the failure (the first entry is never used).
inline constexpr int64_t downloadRetrySeconds[] = {0, 1, 5, 30};

/// How a failed download continues. The count covers all payloads of a package, and a success does not reset it.
struct DownloadFailure {
    uint32_t failures;        ///< the count afterwards: 0 when no retry is due
    bool retry;               ///< the download is tried again without a question
    int64_t waitSeconds = 0;  ///< how long to wait before that
};

/// The failure that follows `failures` earlier ones of the package.
constexpr DownloadFailure nextAttempt(uint32_t failures) {
    const uint32_t count = failures + 1;
    if (count < std::size(downloadRetrySeconds)) return {count, true, downloadRetrySeconds[count]};
    return {0, false, 0};
}

/// A download counts as cancelled if the user cancelled, or if its status is that of a cancel, even without one by the
/// user.
constexpr bool isDownloadCancelled(bool userCancelled, Hresult status) {
    return userCancelled || codeOf(status) == userExitCode;
}

/// The interval at which a wait checks for a cancel.
inline constexpr std::chrono::milliseconds retryPollInterval{250};

/// Waits until the given seconds have passed or cancelled() returns true. now() returns the time of a steady clock,
/// sleep() takes a duration.
template <typename Now, typename Sleep, typename Cancelled>
void waitBeforeRetry(int64_t seconds, Now now, Sleep sleep, Cancelled cancelled) {
    auto current = now();
    const auto deadline = current + std::chrono::milliseconds(seconds * 1000);
    while (current < deadline && !cancelled()) {
        sleep(std::min<std::chrono::milliseconds>(deadline - current, retryPollInterval));
        current = now();
    }
}

}  // namespace pdx
