// The callbacks of caching, which come on a thread of the engine's own, and the automatic retries of a failed download.
#include <windows.h>

#include <shlwapi.h>

#include "core/BootstrapperApplication.h"

namespace pdx {

int BootstrapperApplication::OnCacheBegin() {
    m_run.record(Operation::cacheBegin, {});
    return sendAppMessage(WM_BA_CACHE_BEGIN);
}

int BootstrapperApplication::OnCachePackageBegin(LPCWSTR wzPackageId, DWORD cCachePayloads,
                                                 DWORD64 dw64PackageCacheSize) {
    m_run.record(Operation::cachePackageBegin, {{"wzPackageId", "pkid", wzPackageId},
                                                {"cCachePayloads", "cpld", cCachePayloads},
                                                {"dw64PackageCacheSize", "pcsz", dw64PackageCacheSize}});
    m_download.beginPackage();
    return cancelCheck();
}

int BootstrapperApplication::OnCacheAcquireBegin(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                 BOOTSTRAPPER_CACHE_OPERATION operation, LPCWSTR wzSource) {
    m_run.record(Operation::cacheAcquireBegin, {{"wzPackageOrContainerId", "pkid", wzPackageOrContainerId},
                                                {"wzPayloadId", "plid", wzPayloadId},
                                                {"operation", "caop", operation},
                                                {"wzSource", "psrc", wzSource}});
    m_download.begin(operation, wzSource);
    return sendAppMessage(WM_BA_CACHE_ACQUIRE_BEGIN, static_cast<WPARAM>(operation),
                          reinterpret_cast<LPARAM>(wzSource));
}

int BootstrapperApplication::OnCacheAcquireProgress(LPCWSTR, LPCWSTR, DWORD64 dw64Progress, DWORD64 dw64Total,
                                                    DWORD dwOverallPercentage) {
    m_run.merge({{"dnld", dw64Progress}, {"totl", dw64Total}, {"opct", dwOverallPercentage}});
    m_download.progress(dw64Progress, dw64Total);
    return sendAppMessage(WM_BA_CACHE_ACQUIRE_PROGRESS, dwOverallPercentage);
}

int BootstrapperApplication::OnResolveSource(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId, LPCWSTR wzLocalSource,
                                             LPCWSTR wzDownloadSource) {
    m_run.record(Operation::resolveSource, {{"wzPackageOrContainerId", "pkid", wzPackageOrContainerId},
                                            {"wzPayloadId", "plid", wzPayloadId},
                                            {"wzLocalSource", "lsrc", wzLocalSource},
                                            {"wzDownloadSource", "dsrc", wzDownloadSource}});
    if (wzDownloadSource && !PathFileExistsW(textOrEmpty(wzLocalSource))) return resultDownload;
    return cancelCheck();
}

int BootstrapperApplication::OnCacheAcquireComplete(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                    HRESULT hrStatus, int nRecommendation) {
    m_run.record(Operation::cacheAcquireComplete, {{"wzPackageOrContainerId", "pkid", wzPackageOrContainerId},
                                                   {"wzPayloadId", "plid", wzPayloadId},
                                                   {"hrStatus", "cast", Status{hrStatus}},
                                                   {"nRecommendation", "reco", nRecommendation}});
    UpdateInstallStatus(hrStatus);
    if (m_download.isRetriedAfter(hrStatus)) return isCanceled() ? int{IDCANCEL} : int{resultRetry};
    return sendAppMessage(WM_BA_CACHE_ACQUIRE_COMPLETE, static_cast<WPARAM>(hrStatus), nRecommendation);
}

int BootstrapperApplication::OnCacheVerifyBegin(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId) {
    m_run.record(Operation::cacheVerifyBegin,
                 {{"wzPackageOrContainerId", "pkid", wzPackageOrContainerId}, {"wzPayloadId", "plid", wzPayloadId}});
    return cancelCheck();
}

int BootstrapperApplication::OnCacheVerifyComplete(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                   HRESULT hrStatus, int nRecommendation) {
    m_run.record(Operation::cacheVerifyComplete, {{"wzPackageOrContainerId", "pkid", wzPackageOrContainerId},
                                                  {"wzPayloadId", "plid", wzPayloadId},
                                                  {"hrStatus", "stat", Status{hrStatus}},
                                                  {"nRecommendation", "reco", nRecommendation}});
    UpdateInstallStatus(hrStatus);
    m_download.verified(hrStatus);
    return cancelCheck(nRecommendation);
}

int BootstrapperApplication::OnCachePackageComplete(LPCWSTR wzPackageId, HRESULT hrStatus, int nRecommendation) {
    m_run.record(Operation::cachePackageComplete, {{"wzPackageId", "pkid", wzPackageId},
                                                   {"hrStatus", "stat", Status{hrStatus}},
                                                   {"nRecommendation", "reco", nRecommendation}});
    UpdateInstallStatus(hrStatus);
    return cancelCheck(nRecommendation);
}

void BootstrapperApplication::OnCacheComplete(HRESULT hrStatus) {
    m_run.record(Operation::cacheComplete, {{"hrStatus", "stat", Status{hrStatus}}});
    UpdateInstallStatus(hrStatus);
}

}  // namespace pdx
