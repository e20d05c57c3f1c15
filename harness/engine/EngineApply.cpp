// The apply phase of a run: elevation, registration, the cache thread, execution and rollback.
#include <algorithm>
#include <ranges>
#include <thread>

#include "harness/engine/EngineRun.h"

namespace pdx {

namespace {

constexpr int noAction = 0;
/// How often the engine recommends to fetch a payload anew that did not pass its check.
constexpr size_t recommendedVerifyAttempts = 2;

HRESULT resultOf(const Attempts& attempts, size_t attempt) {
    return attempt < attempts.size() ? attempts[attempt] : S_OK;
}

/// The texts as the engine passes lists of them; the pointers are good while the list lives.
std::vector<LPWSTR> pointers(const std::vector<std::wstring>& texts) {
    std::vector<LPWSTR> result;
    for (const auto& text : texts) result.push_back(const_cast<LPWSTR>(text.c_str()));
    return result;
}

}  // namespace

void EngineRun::apply() {
    auto restart = BOOTSTRAPPER_APPLY_RESTART_NONE;
    const HRESULT hr = applyPlan(restart);
    outcome.apply = hr;
    ask<&App::OnApplyComplete>("OnApplyComplete", {}, hr, restart);
}

HRESULT EngineRun::applyPlan(BOOTSTRAPPER_APPLY_RESTART& restart) {
    const auto phases = static_cast<DWORD>((packagesToCache() > 0) + !planned.empty());
    ask<&App::OnApplyPhaseCount>("OnApplyPhaseCount", {}, phases);
    HRESULT hr = check<&App::OnApplyBegin>("OnApplyBegin", {});
    for (const auto& error : script.applyErrors) {
        if (SUCCEEDED(hr)) hr = raise(error, {});
    }
    if (FAILED(hr) || !planBegun) return hr;
    if (hr = elevate(); FAILED(hr)) return hr;

    hr = check<&App::OnRegisterBegin>("OnRegisterBegin", {});
    if (SUCCEEDED(hr)) hr = script.registration;
    ask<&App::OnRegisterComplete>("OnRegisterComplete", {}, hr);
    if (FAILED(hr)) return hr;

    hr = cacheAndExecute(restart);
    ask<&App::OnUnregisterBegin>("OnUnregisterBegin", {});
    ask<&App::OnUnregisterComplete>("OnUnregisterComplete", {}, S_OK);
    return hr;
}

HRESULT EngineRun::elevate() {
    if (elevated) return S_OK;
    HRESULT hr = check<&App::OnElevate>("OnElevate", {});
    if (FAILED(hr)) return hr;
    for (size_t attempt = 0;; ++attempt) {
        hr = resultOf(script.elevate, attempt);
        elevated = SUCCEEDED(hr);
        if (elevated) return hr;
        const ScriptedError error{.type = BOOTSTRAPPER_ERROR_TYPE_ELEVATE,
                                  .code = static_cast<DWORD>(HRESULT_CODE(hr)),
                                  .text = L"elevation refused",
                                  .flags = MB_ICONERROR | MB_RETRYCANCEL};
        int answer = 0;
        raise(error, {}, &answer);
        if (answer != IDRETRY) return hr;
    }
}

HRESULT EngineRun::raise(const ScriptedError& error, const std::wstring& package, int* answer) {
    auto data = pointers(error.data);
    const int result = ask<&App::OnError>("OnError", package, error.type, package.empty() ? nullptr : package.c_str(),
                                          error.code, error.text.c_str(), error.flags, static_cast<DWORD>(data.size()),
                                          const_cast<LPCWSTR*>(data.data()), error.recommendation);
    if (answer) *answer = result;
    return interpret(result);
}

DWORD EngineRun::packagesToCache() const {
    return static_cast<DWORD>(std::ranges::count_if(planned, &PlannedPackage::isCached));
}

/// Each package counts once for being cached and once for being executed.
HRESULT EngineRun::overallProgress() {
    const auto steps = static_cast<int>(packagesToCache() + planned.size());
    const auto percent = static_cast<DWORD>(std::max(0, packagesCached + packagesExecuted) * 100 / steps);
    return check<&App::OnProgress>("OnProgress", {}, percent, percent);
}

HRESULT EngineRun::cacheAndExecute(BOOTSTRAPPER_APPLY_RESTART& restart) {
    cacheResult = S_OK;
    packagesCached = packagesExecuted = 0;
    std::thread cacheThread([this] { cache(); });
    HRESULT hr = S_OK;
    if (!script.parallelCache) {
        cacheThread.join();
        hr = cacheResult;
    }
    if (SUCCEEDED(hr) && !planned.empty()) hr = execute(restart);
    if (cacheThread.joinable()) cacheThread.join();
    return FAILED(hr) ? hr : cacheResult.load();
}

// The cache thread.

void EngineRun::cache() {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    // An uninstall has nothing to cache, and the slots are not called.
    if (packagesToCache() > 0) {
        const HRESULT hr = cachePackages();
        cacheResult = hr;
        ask<&App::OnCacheComplete>("OnCacheComplete", {}, hr);
    }
    for (const auto& entry : planned) SetEvent(entry.cached.get());
    CoUninitialize();
}

HRESULT EngineRun::cachePackages() {
    HRESULT hr = check<&App::OnCacheBegin>("OnCacheBegin", {});
    for (auto& entry : planned) {
        if (FAILED(hr)) return hr;
        if (!entry.isCached()) continue;
        hr = cachePackage(entry);
        if (SUCCEEDED(hr)) SetEvent(entry.cached.get());
    }
    return hr;
}

HRESULT EngineRun::cachePackage(PlannedPackage& entry) {
    const auto& package = *entry.package;
    const auto* id = package.id.c_str();
    DWORD64 total = 0;
    for (const auto& payload : package.payloads) total += payload.size;
    for (;;) {
        HRESULT hr = check<&App::OnCachePackageBegin>("OnCachePackageBegin", package.id, id,
                                                      static_cast<DWORD>(package.payloads.size()), total);
        for (const auto& payload : package.payloads) {
            if (SUCCEEDED(hr)) hr = cachePayload(package, payload);
        }
        if (SUCCEEDED(hr)) {
            ++packagesCached;
            hr = overallProgress();
        }
        const int recommendation = FAILED(hr) && !package.vital ? IDIGNORE : noAction;
        const int answer =
            ask<&App::OnCachePackageComplete>("OnCachePackageComplete", package.id, id, hr, recommendation);
        if (SUCCEEDED(hr)) return hr;
        if (answer == IDIGNORE && !package.vital) {
            entry.cacheFailed = true;
            return S_OK;
        }
        if (answer != IDRETRY) return hr;
    }
}

HRESULT EngineRun::cachePayload(const ScriptedPackage& package, const ScriptedPayload& payload) {
    const auto* id = package.id.c_str();
    const auto* payloadId = payload.id.c_str();
    bool acquired = payload.source == PayloadSource::attached;
    for (size_t acquireAttempt = 0, verifyAttempt = 0;; ++verifyAttempt) {
        if (!acquired) {
            if (const HRESULT hr = acquire(package, payload, acquireAttempt); FAILED(hr)) return hr;
            acquired = true;
        }
        HRESULT hr = check<&App::OnCacheVerifyBegin>("OnCacheVerifyBegin", package.id, id, payloadId);
        if (FAILED(hr)) return hr;
        hr = resultOf(payload.verify, verifyAttempt);
        if (SUCCEEDED(hr)) hr = cacheProgress(package, payload, 100);
        const int recommendation = FAILED(hr) && verifyAttempt < recommendedVerifyAttempts ? IDTRYAGAIN : noAction;
        const int answer =
            ask<&App::OnCacheVerifyComplete>("OnCacheVerifyComplete", package.id, id, payloadId, hr, recommendation);
        if (SUCCEEDED(hr) || (answer != IDRETRY && answer != IDTRYAGAIN)) return hr;
        if (answer == IDTRYAGAIN) acquired = payload.source == PayloadSource::attached;
    }
}

/// Attempts until one succeeds or the application does not answer IDRETRY; the attempts go on counting when the payload
/// is fetched anew.
HRESULT EngineRun::acquire(const ScriptedPackage& package, const ScriptedPayload& payload, size_t& attempt) {
    const auto* id = package.id.c_str();
    const auto* payloadId = payload.id.c_str();
    const std::wstring local = L"C:\\source\\" + payload.id;
    const std::wstring address = L"https://downloads.example/" + payload.id;
    const bool downloads = payload.source == PayloadSource::download;
    for (;;) {
        if (downloads) {
            const int answer = ask<&App::OnResolveSource>("OnResolveSource", package.id, id, payloadId, local.c_str(),
                                                          address.c_str());
            if (answer == IDRETRY) continue;
            if (FAILED(interpret(answer))) return interpret(answer);
            if (answer != pdx::resultDownload) return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
        }
        HRESULT hr = check<&App::OnCacheAcquireBegin>(
            "OnCacheAcquireBegin", package.id, id, payloadId,
            downloads ? BOOTSTRAPPER_CACHE_OPERATION_DOWNLOAD : BOOTSTRAPPER_CACHE_OPERATION_COPY,
            downloads ? address.c_str() : local.c_str());
        if (FAILED(hr)) return hr;
        hr = transfer(package, payload, resultOf(payload.acquire, attempt++));
        const int answer =
            ask<&App::OnCacheAcquireComplete>("OnCacheAcquireComplete", package.id, id, payloadId, hr, noAction);
        if (SUCCEEDED(hr) || answer != IDRETRY) return hr;
    }
}

/// An attempt that fails breaks off half way.
HRESULT EngineRun::transfer(const ScriptedPackage& package, const ScriptedPayload& payload, HRESULT result) {
    for (const DWORD percent : {0, 50, 100}) {
        if (FAILED(result) && percent == 100) break;
        if (const HRESULT hr = cacheProgress(package, payload, percent); FAILED(hr)) return hr;
    }
    if (SUCCEEDED(result)) return result;
    for (const auto& error : payload.errors) {
        if (const HRESULT hr = raise(error, package.id); FAILED(hr)) return hr;
    }
    return result;
}

HRESULT EngineRun::cacheProgress(const ScriptedPackage& package, const ScriptedPayload& payload, DWORD percent) {
    const auto overall = (static_cast<DWORD>(packagesCached) * 100 + percent) / packagesToCache();
    return check<&App::OnCacheAcquireProgress>("OnCacheAcquireProgress", package.id, package.id.c_str(),
                                               payload.id.c_str(), payload.size * percent / 100, payload.size, overall);
}

// Execute.

HRESULT EngineRun::execute(BOOTSTRAPPER_APPLY_RESTART& restart) {
    const auto count = static_cast<DWORD>(planned.size());
    HRESULT hr = check<&App::OnExecuteBegin>("OnExecuteBegin", {}, count);
    size_t begun = 0;
    while (SUCCEEDED(hr) && begun < planned.size()) {
        const auto& entry = planned[begun];
        WaitForSingleObject(entry.cached.get(), INFINITE);
        if (hr = cacheResult; FAILED(hr)) break;
        ++begun;
        if (entry.cacheFailed) continue;
        hr = executePackage(*entry.package, restart);
    }
    if (FAILED(hr)) {
        for (const auto& entry : planned | std::views::take(begun) | std::views::reverse) rollBack(entry);
    }
    ask<&App::OnExecuteComplete>("OnExecuteComplete", {}, hr);
    return hr;
}

HRESULT EngineRun::executePackage(const ScriptedPackage& package, BOOTSTRAPPER_APPLY_RESTART& restart) {
    const auto* id = package.id.c_str();
    for (size_t attempt = 0;; ++attempt) {
        HRESULT hr = check<&App::OnExecutePackageBegin>("OnExecutePackageBegin", package.id, id, TRUE);
        if (SUCCEEDED(hr)) hr = executeEvents(package);
        if (SUCCEEDED(hr)) hr = resultOf(package.execute, attempt);
        if (SUCCEEDED(hr)) {
            ++packagesExecuted;
            hr = overallProgress();
        }
        const auto packageRestart = SUCCEEDED(hr) ? package.restart : BOOTSTRAPPER_APPLY_RESTART_NONE;
        const int recommendation = FAILED(hr) && !package.vital ? IDIGNORE : noAction;
        const int answer = ask<&App::OnExecutePackageComplete>("OnExecutePackageComplete", package.id, id, hr,
                                                               packageRestart, recommendation);
        restart = std::max(restart, packageRestart);
        if (SUCCEEDED(hr)) return hr;
        if (answer == IDIGNORE && !package.vital) return S_OK;
        if (answer != IDRETRY) return hr;
    }
}

HRESULT EngineRun::executeEvents(const ScriptedPackage& package) {
    const auto* id = package.id.c_str();
    const auto perform = [&](const auto& event) {
        using Event = std::decay_t<decltype(event)>;
        if constexpr (std::is_same_v<Event, ScriptedProgress>) {
            const auto done = static_cast<DWORD>(packagesExecuted) * 100 + event.percent;
            return check<&App::OnExecuteProgress>("OnExecuteProgress", package.id, id, event.percent,
                                                  static_cast<DWORD>(done / planned.size()));
        } else if constexpr (std::is_same_v<Event, ScriptedMessage>) {
            auto data = pointers(event.data);
            return check<&App::OnExecuteMsiMessage>("OnExecuteMsiMessage", package.id, id, event.type, event.flags,
                                                    event.text.c_str(), static_cast<DWORD>(data.size()),
                                                    const_cast<LPCWSTR*>(data.data()), event.recommendation);
        } else if constexpr (std::is_same_v<Event, ScriptedError>) {
            return raise(event, package.id);
        } else {
            auto files = pointers(event.files);
            return check<&App::OnExecuteFilesInUse>("OnExecuteFilesInUse", package.id, id,
                                                    static_cast<DWORD>(files.size()),
                                                    const_cast<LPCWSTR*>(files.data()));
        }
    };
    for (const auto& event : package.events) {
        if (const HRESULT hr = std::visit(perform, event); FAILED(hr)) return hr;
    }
    return S_OK;
}

/// Of a package that failed too. Answers are not heeded: a rollback can't be cancelled.
void EngineRun::rollBack(const PlannedPackage& entry) {
    if (entry.rollback == BOOTSTRAPPER_ACTION_STATE_NONE || entry.cacheFailed) return;
    const auto& package = *entry.package;
    const auto* id = package.id.c_str();
    ask<&App::OnExecutePackageBegin>("OnExecutePackageBegin", package.id, id, FALSE);
    --packagesExecuted;
    overallProgress();
    ask<&App::OnExecutePackageComplete>("OnExecutePackageComplete", package.id, id, S_OK,
                                        BOOTSTRAPPER_APPLY_RESTART_NONE, noAction);
}

}  // namespace pdx
