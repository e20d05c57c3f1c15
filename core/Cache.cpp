// The callbacks of caching, on the engine's cache thread, and the automatic retries of a failed download.
#include <windows.h>

#include <shlwapi.h>

#include "core/BootstrapperApplication.h"

namespace pdx {

int BootstrapperApplication::OnCacheBegin() {
    m_context.record(Operation::cacheBegin, {});
    return m_run.ui->cacheBegin();
}

int BootstrapperApplication::OnCachePackageBegin(LPCWSTR wzPackageId, DWORD cCachePayloads,
                                                 DWORD64 dw64PackageCacheSize) {
    m_context.record(Operation::cachePackageBegin, {{"wzPackageId", "pkid", wzPackageId},
                                                    {"cCachePayloads", "cpld", cCachePayloads},
                                                    {"dw64PackageCacheSize", "pcsz", dw64PackageCacheSize}});
    m_download.beginPackage();
    return cancelCheck();
}

int BootstrapperApplication::OnCacheAcquireBegin(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                 BOOTSTRAPPER_CACHE_OPERATION operation, LPCWSTR wzSource) {
    m_context.record(Operation::cacheAcquireBegin, {{"wzPackageOrContainerId", "pkid", wzPackageOrContainerId},
                                                    {"wzPayloadId", "plid", wzPayloadId},
                                                    {"operation", "caop", operation},
                                                    {"wzSource", "psrc", wzSource}});
    m_download.begin(operation, wzSource);
    return m_run.ui->cacheAcquireBegin(operation, wzSource);
}

int BootstrapperApplication::OnCacheAcquireProgress(LPCWSTR, LPCWSTR, DWORD64 dw64Progress, DWORD64 dw64Total,
                                                    DWORD dwOverallPercentage) {
    m_context.merge({{"dnld", dw64Progress}, {"totl", dw64Total}, {"opct", dwOverallPercentage}});
    m_download.progress(dw64Progress, dw64Total);
    return m_run.ui->cacheAcquireProgress(dwOverallPercentage);
}

int BootstrapperApplication::OnResolveSource(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId, LPCWSTR wzLocalSource,
                                             LPCWSTR wzDownloadSource) {
    m_context.record(Operation::resolveSource, {{"wzPackageOrContainerId", "pkid", wzPackageOrContainerId},
                                                {"wzPayloadId", "plid", wzPayloadId},
                                                {"wzLocalSource", "lsrc", wzLocalSource},
                                                {"wzDownloadSource", "dsrc", wzDownloadSource}});
    if (wzDownloadSource && !PathFileExistsW(textOrEmpty(wzLocalSource))) return resultDownload;
    return cancelCheck();
}

int BootstrapperApplication::OnCacheAcquireComplete(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                    HRESULT hrStatus, int nRecommendation) {
    m_context.record(Operation::cacheAcquireComplete, {{"wzPackageOrContainerId", "pkid", wzPackageOrContainerId},
                                                       {"wzPayloadId", "plid", wzPayloadId},
                                                       {"hrStatus", "cast", Status{hrStatus}},
                                                       {"nRecommendation", "reco", nRecommendation}});
    UpdateInstallStatus(hrStatus);
    if (m_download.endAndWaitForRetry(hrStatus)) return m_run.isCancelled() ? int{IDCANCEL} : int{resultRetry};
    return m_run.ui->cacheAcquireComplete(hrStatus, nRecommendation);
}

int BootstrapperApplication::OnCacheVerifyComplete(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                   HRESULT hrStatus, int nRecommendation) {
    m_context.record(Operation::cacheVerifyComplete, {{"wzPackageOrContainerId", "pkid", wzPackageOrContainerId},
                                                      {"wzPayloadId", "plid", wzPayloadId},
                                                      {"hrStatus", "stat", Status{hrStatus}},
                                                      {"nRecommendation", "reco", nRecommendation}});
    UpdateInstallStatus(hrStatus);
    m_download.verified(hrStatus);
    return cancelCheck(nRecommendation);
}

}  // namespace pdx
