// The callbacks of caching, which come on a thread of the engine's own, and the automatic retries of a failed download.
#include <windows.h>

#include <shlwapi.h>

#include "core/BootstrapperApplication.h"
#include "platform/Log.h"
#include "platform/Uuid.h"
#include "telemetry/TelemetryManager.h"

namespace pdx {

int BootstrapperApplication::OnCacheBegin() {
    record(Operation::cacheBegin, {});
    return sendAppMessage(WM_BA_CACHE_BEGIN);
}

int BootstrapperApplication::OnCachePackageBegin(LPCWSTR wzPackageId, DWORD cCachePayloads,
                                                 DWORD64 dw64PackageCacheSize) {
    record(Operation::cachePackageBegin, {{"wzPackageId", "pkid", wzPackageId},
                                          {"cCachePayloads", "cpld", cCachePayloads},
                                          {"dw64PackageCacheSize", "pcsz", dw64PackageCacheSize}});
    m_downloadRetries = 0;
    return cancelCheck();
}

int BootstrapperApplication::OnCacheAcquireBegin(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                 BOOTSTRAPPER_CACHE_OPERATION operation, LPCWSTR wzSource) {
    record(Operation::cacheAcquireBegin, {{"wzPackageOrContainerId", "pkid", wzPackageOrContainerId},
                                          {"wzPayloadId", "plid", wzPayloadId},
                                          {"operation", "caop", operation},
                                          {"wzSource", "psrc", wzSource}});
    m_cacheOperation = operation;
    m_downloadStart = TelemetryManager::timestamp(briskSender);
    m_downloadLink = contextText(wzSource);
    m_downloadProgress = 0;
    m_downloadTotal = 0;
    if (operation == BOOTSTRAPPER_CACHE_OPERATION_DOWNLOAD) {
        m_downloadId = newUuidString();
        tellDownloadStarted();
    }
    return sendAppMessage(WM_BA_CACHE_ACQUIRE_BEGIN, static_cast<WPARAM>(operation),
                          reinterpret_cast<LPARAM>(wzSource));
}

int BootstrapperApplication::OnCacheAcquireProgress(LPCWSTR, LPCWSTR, DWORD64 dw64Progress, DWORD64 dw64Total,
                                                    DWORD dwOverallPercentage) {
    mergeContext({{"dnld", dw64Progress}, {"totl", dw64Total}, {"opct", dwOverallPercentage}});
    m_downloadProgress = dw64Progress;
    m_downloadTotal = dw64Total;
    return sendAppMessage(WM_BA_CACHE_ACQUIRE_PROGRESS, dwOverallPercentage);
}

int BootstrapperApplication::OnResolveSource(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId, LPCWSTR wzLocalSource,
                                             LPCWSTR wzDownloadSource) {
    record(Operation::resolveSource, {{"wzPackageOrContainerId", "pkid", wzPackageOrContainerId},
                                      {"wzPayloadId", "plid", wzPayloadId},
                                      {"wzLocalSource", "lsrc", wzLocalSource},
                                      {"wzDownloadSource", "dsrc", wzDownloadSource}});
    if (wzDownloadSource && !PathFileExistsW(textOrEmpty(wzLocalSource))) return resultDownload;
    return cancelCheck();
}

int BootstrapperApplication::OnCacheAcquireComplete(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                    HRESULT hrStatus, int nRecommendation) {
    record(Operation::cacheAcquireComplete, {{"wzPackageOrContainerId", "pkid", wzPackageOrContainerId},
                                             {"wzPayloadId", "plid", wzPayloadId},
                                             {"hrStatus", "cast", Status{hrStatus}},
                                             {"nRecommendation", "reco", nRecommendation}});
    UpdateInstallStatus(hrStatus);
    if (m_cacheOperation == BOOTSTRAPPER_CACHE_OPERATION_DOWNLOAD) {
        if (isDownloadCancelled(isCanceled(), hrStatus))
            tellDownloadCancelled();
        else if (SUCCEEDED(hrStatus))
            tellDownloadFinished();
        else if (retryDownload(hrStatus))
            return isCanceled() ? static_cast<int>(IDCANCEL) : static_cast<int>(resultRetry);
    }
    return sendAppMessage(WM_BA_CACHE_ACQUIRE_COMPLETE, static_cast<WPARAM>(hrStatus), nRecommendation);
}

bool BootstrapperApplication::retryDownload(HRESULT hrStatus) {
    const DownloadFailure failure = nextAttempt(m_downloadRetries);
    m_downloadRetries = failure.failures;
    tellDownloadFailed(hrStatus, {{"auto_retry", failure.retry ? "true" : "false"}});
    if (!failure.retry) return false;
    PDX_LOG(logInfo, "BootstrapperApplication::OnCacheAcquireComplete", "Waiting %llds before auto retry",
            failure.waitSeconds);
    waitBeforeRetry(failure.waitSeconds, m_hooks.steadyTime, m_hooks.pause, [this] { return isCanceled(); });
    return true;
}

int BootstrapperApplication::OnCacheVerifyBegin(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId) {
    record(Operation::cacheVerifyBegin,
           {{"wzPackageOrContainerId", "pkid", wzPackageOrContainerId}, {"wzPayloadId", "plid", wzPayloadId}});
    return cancelCheck();
}

int BootstrapperApplication::OnCacheVerifyComplete(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                   HRESULT hrStatus, int nRecommendation) {
    record(Operation::cacheVerifyComplete, {{"wzPackageOrContainerId", "pkid", wzPackageOrContainerId},
                                            {"wzPayloadId", "plid", wzPayloadId},
                                            {"hrStatus", "stat", Status{hrStatus}},
                                            {"nRecommendation", "reco", nRecommendation}});
    UpdateInstallStatus(hrStatus);
    if (FAILED(hrStatus) && m_cacheOperation == BOOTSTRAPPER_CACHE_OPERATION_DOWNLOAD) tellDownloadFailed(hrStatus);
    return cancelCheck(nRecommendation);
}

int BootstrapperApplication::OnCachePackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus, int nRecommendation) {
    record(Operation::cachePackageComplete, {{"wzPackageId", "pkid", wzPackageId},
                                             {"hrStatus", "stat", Status{hrStatus}},
                                             {"nRecommendation", "reco", nRecommendation}});
    UpdateInstallStatus(hrStatus);
    return cancelCheck(nRecommendation);
}

void BootstrapperApplication::OnCacheComplete(HRESULT hrStatus) {
    record(Operation::cacheComplete, {{"hrStatus", "stat", Status{hrStatus}}});
    UpdateInstallStatus(hrStatus);
}

}  // namespace pdx
