// The download that is under way: its events, and its automatic retries.
#pragma once

#include "core/rules/RunEvents.h"
#include "core/Run.h"

namespace pdx {

/// On the engine's cache thread alone. The run outlives it.
class Download {
  public:
    explicit Download(const Run& downloadRun) : run(downloadRun) {}

    /// A package's payloads are about to be acquired. Its failures are counted over all of them, and a success does not
    /// reset the count.
    void beginPackage() { failures = 0; }
    void begin(BOOTSTRAPPER_CACHE_OPERATION acquireOperation, LPCWSTR source);
    void progress(uint64_t bytes, uint64_t total);
    /// Sends how a download ended. A failure that is due for a retry is waited for first: whether the engine is to try
    /// again. The wait ends with a cancel.
    [[nodiscard]] bool isRetriedAfter(HRESULT hr);
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
