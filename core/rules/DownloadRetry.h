// The automatic retries of a failed download, without a word to the user.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

#include "platform/rules/ProgramErrors.h"

namespace pdx {

/// Seconds to wait before a retry, by the number of the failure (the first entry is never used).
inline constexpr int64_t downloadRetrySeconds[] = {0, 1, 5, 30};

/// What becomes of a failed download. The count goes on over the payloads of a package and is not reset by a success.
struct DownloadFailure {
    uint32_t failures;        ///< the count afterwards: 0 when no retry is due
    bool retry;               ///< the download is tried again by itself
    int64_t waitSeconds = 0;  ///< how long to wait before that
};

/// The failure that follows `failures` earlier ones of the package.
constexpr DownloadFailure nextAttempt(uint32_t failures) {
    const uint32_t count = failures + 1;
    if (count < std::size(downloadRetrySeconds)) return {count, true, downloadRetrySeconds[count]};
    return {0, false, 0};
}

/// A download counts as cancelled by the user's word or by its status, even when the user did nothing.
constexpr bool isDownloadCancelled(bool userCancelled, Hresult status) {
    return userCancelled || codeOf(status) == userExitCode;
}

/// The longest sleep of a wait, and so the longest that a cancel waits to be heard.
inline constexpr std::chrono::milliseconds retryPollInterval{250};

/// Waits until the clock has passed the given seconds or cancelled() says so, whichever comes first. now() gives
/// milliseconds of a steady clock, sleep() takes milliseconds.
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
