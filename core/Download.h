// The current download: its events, and its automatic retries.
#pragma once

#include "core/rules/RunEvents.h"
#include "core/Run.h"

namespace pdx {

/// Used on the engine's cache thread only. The run outlives the object.
class Download {
  public:
    explicit Download(const Run& downloadRun) : run(downloadRun) {}

    /// Resets the count of failures (DownloadFailure).
    void beginPackage() { failures = 0; }
    /// Begins an attempt; sends its start if it is a download, not a copy.
    void begin(BOOTSTRAPPER_CACHE_OPERATION acquireOperation, LPCWSTR source);
    void progress(uint64_t bytes, uint64_t total);
    /// Sends how a download ended. True if the engine shall try again; then the retry's delay has passed, or the user
    /// has cancelled.
    [[nodiscard]] bool endAndWaitForRetry(HRESULT hr);
    /// Sends the failure of a downloaded file's check.
    void verified(HRESULT hr) const;

  private:
    [[nodiscard]] bool isDownload() const { return operation == BOOTSTRAPPER_CACHE_OPERATION_DOWNLOAD; }
    bool retry(HRESULT hr);

    const Run& run;
    BOOTSTRAPPER_CACHE_OPERATION operation = BOOTSTRAPPER_CACHE_OPERATION_COPY;
    DownloadFacts facts;
    uint32_t failures = 0;
};

}  // namespace pdx
