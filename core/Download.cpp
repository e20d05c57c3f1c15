#include "core/Download.h"

#include "core/rules/DownloadRetry.h"
#include "platform/Log.h"
#include "platform/Uuid.h"

namespace pdx {

void Download::begin(BOOTSTRAPPER_CACHE_OPERATION acquireOperation, LPCWSTR source) {
    operation = acquireOperation;
    facts = {.id = newUuidString(), .start = TelemetryManager::timestamp(briskSender), .link = contextText(source)};
    if (isDownload()) run.telemetry.sendDownloadStarted(facts);
}

void Download::progress(uint64_t bytes, uint64_t total) {
    facts.progress = bytes;
    facts.total = total;
}

bool Download::endAndWaitForRetry(HRESULT hr) {
    if (!isDownload()) return false;
    if (isDownloadCancelled(run.isCancelled(), hr))
        run.telemetry.sendDownloadCancelled(facts);
    else if (SUCCEEDED(hr))
        run.telemetry.sendDownloadFinished(facts);
    else
        return retry(hr);
    return false;
}

bool Download::retry(HRESULT hr) {
    const DownloadFailure failure = nextAttempt(failures);
    failures = failure.failures;
    run.telemetry.sendDownloadFailed(facts, hr, {{"auto_retry", failure.retry ? "true" : "false"}});
    if (!failure.retry) return false;
    PDX_LOG(logInfo, "BootstrapperApplication::OnCacheAcquireComplete", "Waiting %llds before auto retry",
            failure.waitSeconds);
    waitBeforeRetry(failure.waitSeconds, run.hooks.steadyTime, run.hooks.pause, run.isCancelled);
    return true;
}

void Download::verified(HRESULT hr) const {
    if (FAILED(hr) && isDownload()) run.telemetry.sendDownloadFailed(facts, hr);
}

}  // namespace pdx
