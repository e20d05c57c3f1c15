// The callbacks of caching, which come on a thread of the engine's own, and the automatic retries of a failed download.
#include <windows.h>

#include <shlwapi.h>

#include "core/BootstrapperApplication.h"
#include "core/ContextText.h"
#include "core/rules/Names.h"
#include "platform/Errors.h"
#include "platform/Log.h"
#include "platform/Uuid.h"
#include "telemetry/TelemetryManager.h"

namespace pdx {

using Base = CBalBaseBootstrapperApplication;

int BootstrapperApplication::OnCacheBegin() {
    PDX_LOG(logTrace, "BootstrapperApplication::OnCacheBegin", "Entering OnCacheBegin");
    replaceContext(operationCacheBegin);
    return sendAppMessage(WM_BA_CACHE_BEGIN);
}

int BootstrapperApplication::OnCachePackageBegin(LPCWSTR wzPackageId, DWORD cCachePayloads,
                                                 DWORD64 dw64PackageCacheSize) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnCachePackageBegin",
            "wzPackageId=%ls, cCachePayloads=%u, dw64PackageCacheSize=%llu", textOrEmpty(wzPackageId), cCachePayloads,
            dw64PackageCacheSize);
    replaceContext(operationCachePackageBegin,
                   {{"pkid", contextText(wzPackageId)}, {"cpld", cCachePayloads}, {"pcsz", dw64PackageCacheSize}});
    m_downloadRetries = 0;
    return Base::OnCachePackageBegin(wzPackageId, cCachePayloads, dw64PackageCacheSize);
}

int BootstrapperApplication::OnCacheAcquireBegin(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                 BOOTSTRAPPER_CACHE_OPERATION operation, LPCWSTR wzSource) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnCacheAcquireBegin",
            "wzPackageOrContainerId=%ls, wzPayloadId=%ls, operation=%s, wzSource=%ls",
            textOrEmpty(wzPackageOrContainerId), textOrEmpty(wzPayloadId), nameOf(operation), textOrEmpty(wzSource));
    replaceContext(operationCacheAcquireBegin, {{"pkid", contextText(wzPackageOrContainerId)},
                                                {"plid", contextText(wzPayloadId)},
                                                {"caop", static_cast<int32_t>(operation)},
                                                {"psrc", contextText(wzSource)}});
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
    PDX_LOG(logTrace, "BootstrapperApplication::OnResolveSource",
            "wzPackageOrContainerId=%ls, wzPayloadId=%ls, wzLocalSource=%ls, wzDownloadSource=%ls",
            textOrEmpty(wzPackageOrContainerId), textOrEmpty(wzPayloadId), textOrEmpty(wzLocalSource),
            textOrEmpty(wzDownloadSource));
    mergeContext(operationResolveSource, {{"pkid", contextText(wzPackageOrContainerId)},
                                          {"plid", contextText(wzPayloadId)},
                                          {"lsrc", contextText(wzLocalSource)},
                                          {"dsrc", contextText(wzDownloadSource)}});
    if (wzDownloadSource && !PathFileExistsW(textOrEmpty(wzLocalSource))) return resultDownload;
    return Base::OnResolveSource(wzPackageOrContainerId, wzPayloadId, wzLocalSource, wzDownloadSource);
}

int BootstrapperApplication::OnCacheAcquireComplete(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                    HRESULT hrStatus, int nRecommendation) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnCacheAcquireComplete",
            "wzPackageOrContainerId=%ls, wzPayloadId=%ls, hrStatus=%s, nRecommendation=%d",
            textOrEmpty(wzPackageOrContainerId), textOrEmpty(wzPayloadId), describeError(hrStatus), nRecommendation);
    mergeContext(operationCacheAcquireComplete, {{"pkid", contextText(wzPackageOrContainerId)},
                                                 {"plid", contextText(wzPayloadId)},
                                                 {"cast", contextStatus(hrStatus)},
                                                 {"reco", nRecommendation}});
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
    PDX_LOG(logTrace, "BootstrapperApplication::OnCacheVerifyBegin", "wzPackageOrContainerId=%ls, wzPayloadId=%ls",
            textOrEmpty(wzPackageOrContainerId), textOrEmpty(wzPayloadId));
    replaceContext(operationCacheVerifyBegin,
                   {{"pkid", contextText(wzPackageOrContainerId)}, {"plid", contextText(wzPayloadId)}});
    return Base::OnCacheVerifyBegin(wzPackageOrContainerId, wzPayloadId);
}

int BootstrapperApplication::OnCacheVerifyComplete(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                   HRESULT hrStatus, int nRecommendation) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnCacheVerifyComplete",
            "wzPackageOrContainerId=%ls, wzPayloadId=%ls, hrStatus=%s, nRecommendation=%d",
            textOrEmpty(wzPackageOrContainerId), textOrEmpty(wzPayloadId), describeError(hrStatus), nRecommendation);
    mergeContext(operationCacheVerifyComplete, {{"pkid", contextText(wzPackageOrContainerId)},
                                                {"plid", contextText(wzPayloadId)},
                                                {"stat", contextStatus(hrStatus)},
                                                {"reco", nRecommendation}});
    UpdateInstallStatus(hrStatus);
    if (FAILED(hrStatus) && m_cacheOperation == BOOTSTRAPPER_CACHE_OPERATION_DOWNLOAD) tellDownloadFailed(hrStatus);
    return Base::OnCacheVerifyComplete(wzPackageOrContainerId, wzPayloadId, hrStatus, nRecommendation);
}

int BootstrapperApplication::OnCachePackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus, int nRecommendation) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnCachePackageComplete",
            "wzPackageId=%ls, hrStatus=%s, nRecommendation=%d", textOrEmpty(wzPackageId), describeError(hrStatus),
            nRecommendation);
    mergeContext(operationCachePackageComplete,
                 {{"pkid", contextText(wzPackageId)}, {"stat", contextStatus(hrStatus)}, {"reco", nRecommendation}});
    UpdateInstallStatus(hrStatus);
    return Base::OnCachePackageComplete(wzPackageId, hrStatus, nRecommendation);
}

void BootstrapperApplication::OnCacheComplete(HRESULT hrStatus) {
    PDX_LOG(logTrace, "BootstrapperApplication::OnCacheComplete", "hrStatus=%s", describeError(hrStatus));
    mergeContext(operationCacheComplete, {{"stat", contextStatus(hrStatus)}});
    UpdateInstallStatus(hrStatus);
}

}  // namespace pdx
