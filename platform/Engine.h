// The Burn engine (3.11) as this library uses it: its command and its operations. Its callbacks are in
// core/engine/Callbacks.h.
#pragma once

#include <unknwn.h>
#include <windows.h>

#include "platform/rules/EngineTypes.h"

// Names of the engine's interface.
// NOLINTBEGIN(readability-identifier-naming)
/// The engine's description of the run; it outlives the application object.
struct BOOTSTRAPPER_COMMAND {
    BOOTSTRAPPER_ACTION action;
    BOOTSTRAPPER_DISPLAY display;
    BOOTSTRAPPER_RESTART restart;
    LPWSTR wzCommandLine;
    int nCmdShow;
    BOOTSTRAPPER_RESUME_TYPE resumeType;
    HWND hwndSplashScreen;
    BOOTSTRAPPER_RELATION_TYPE relationType;
    BOOL fPassthrough;
    LPWSTR wzLayoutDirectory;
};

/// {6480D616-27A0-44D7-905B-81512C29C2FB}
inline constexpr GUID IID_IBootstrapperEngine = {
    0x6480d616, 0x27a0, 0x44d7, {0x90, 0x5b, 0x81, 0x51, 0x2c, 0x29, 0xc2, 0xfb}};

/// The engine's operations, in the order of its table. Sizes are in characters, in and out; 0x800700EA means that the
/// buffer was too small and the size is now the required one.
struct IBootstrapperEngine : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetPackageCount(DWORD* pcPackages) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetVariableNumeric(LPCWSTR wzVariable, LONGLONG* pllValue) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetVariableString(LPCWSTR wzVariable, LPWSTR wzValue, DWORD* pcchValue) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetVariableVersion(LPCWSTR wzVariable, DWORD64* pqwValue) = 0;
    virtual HRESULT STDMETHODCALLTYPE FormatString(LPCWSTR wzIn, LPWSTR wzOut, DWORD* pcchOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE EscapeString(LPCWSTR wzIn, LPWSTR wzOut, DWORD* pcchOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE EvaluateCondition(LPCWSTR wzCondition, BOOL* pf) = 0;
    virtual HRESULT STDMETHODCALLTYPE Log(BOOTSTRAPPER_LOG_LEVEL level, LPCWSTR wzMessage) = 0;
    virtual HRESULT STDMETHODCALLTYPE SendEmbeddedError(DWORD dwErrorCode, LPCWSTR wzMessage, DWORD dwUIHint,
                                                        int* pnResult) = 0;
    virtual HRESULT STDMETHODCALLTYPE SendEmbeddedProgress(DWORD dwProgressPercentage,
                                                           DWORD dwOverallProgressPercentage, int* pnResult) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetUpdate(LPCWSTR wzLocalSource, LPCWSTR wzDownloadSource, DWORD64 qwSize,
                                                BOOTSTRAPPER_UPDATE_HASH_TYPE hashType, BYTE* rgbHash,
                                                DWORD cbHash) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetLocalSource(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                     LPCWSTR wzPath) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetDownloadSource(LPCWSTR wzPackageOrContainerId, LPCWSTR wzPayloadId,
                                                        LPCWSTR wzUrl, LPCWSTR wzUser, LPCWSTR wzPassword) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVariableNumeric(LPCWSTR wzVariable, LONGLONG llValue) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVariableString(LPCWSTR wzVariable, LPCWSTR wzValue) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVariableVersion(LPCWSTR wzVariable, DWORD64 qwValue) = 0;
    virtual HRESULT STDMETHODCALLTYPE CloseSplashScreen() = 0;
    virtual HRESULT STDMETHODCALLTYPE Detect(HWND hwndParent) = 0;
    virtual HRESULT STDMETHODCALLTYPE Plan(BOOTSTRAPPER_ACTION action) = 0;
    virtual HRESULT STDMETHODCALLTYPE Elevate(HWND hwndParent) = 0;
    virtual HRESULT STDMETHODCALLTYPE Apply(HWND hwndParent) = 0;
    virtual HRESULT STDMETHODCALLTYPE Quit(DWORD dwExitCode) = 0;
    virtual HRESULT STDMETHODCALLTYPE LaunchApprovedExe(HWND hwndParent, LPCWSTR wzApprovedExeForElevationId,
                                                        LPCWSTR wzArguments, DWORD dwWaitForInputIdleTimeout) = 0;
};
// NOLINTEND(readability-identifier-naming)
