// The download that is under way: its events, and its automatic retries.
#pragma once

#include <functional>

#include "core/rules/RunEvents.h"
#include "core/RunHooks.h"
#include "core/RunTelemetry.h"

namespace pdx {

/// On the engine's cache thread alone. What it is made with outlives it.
class Download {
  public:
    Download(const RunTelemetry& runTelemetry, const RunHooks& runHooks, std::function<bool()> runIsCanceled)
        : telemetry(runTelemetry), hooks(runHooks), isCanceled(std::move(runIsCanceled)) {}

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

    const RunTelemetry& telemetry;
    const RunHooks& hooks;
    std::function<bool()> isCanceled;
    BOOTSTRAPPER_CACHE_OPERATION operation = BOOTSTRAPPER_CACHE_OPERATION_COPY;
    DownloadFacts facts;
    uint32_t failures = 0;
};

}  // namespace pdx
