// An engine for tests: the operations that a bootstrapper application calls, in process and without a bundle.
// EngineRun.h calls the application's callbacks with it.
#pragma once

#include <atomic>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "harness/programs/engine/EngineVariables.h"
#include "platform/Engine.h"
#include "platform/Handles.h"

namespace pdx {

/// A call of an operation that changes something: its name and its arguments as text, "null" for a null pointer.
struct EngineCall {
    std::string operation;
    std::vector<std::wstring> arguments;

    /// "SetVariableString(PDX_REPAIR, 1)".
    [[nodiscard]] std::string text() const;
};

struct EngineLogLine {
    BOOTSTRAPPER_LOG_LEVEL level;
    std::wstring text;
};

/// What Detect, Plan, Apply and Quit put into the engine's queue.
struct EngineRequest {
    enum class Kind { detect, plan, apply, quit } kind;
    /// Plan: the action. Quit: the exit code.
    DWORD argument;
};

/// The caller owns the object; AddRef and Release only count, so that a test sees what is still held. Every operation
/// may be called on any thread; those that the library does not call answer E_NOTIMPL. Results are those of the real
/// engine: 0x80070490 for a missing variable, 0x800700EA with the needed size for a buffer that is too small, and
/// E_INVALIDARG for a null or empty name.
class SmallEngine : public IBootstrapperEngine {
  public:
    SmallEngine();
    SmallEngine(const SmallEngine&) = delete;
    SmallEngine& operator=(const SmallEngine&) = delete;
    virtual ~SmallEngine() = default;

    /// What the answers of the engine can be set to before a run.
    struct Answers {
        HRESULT embeddedProgress = S_OK;  ///< SendEmbeddedProgress
        int embeddedResult = 0;           ///< what it writes
        HRESULT setUpdate = S_OK;
        std::string_view refused;  ///< "Detect", "Plan" or "Apply": fails with E_FAIL, and nothing follows
    };
    Answers answers;
    EngineVariables variables;

    /// Off, log lines and calls are not kept, and lines only counted: for measuring.
    void keepRecords(bool keep) { recordsKept = keep; }
    [[nodiscard]] std::vector<EngineLogLine> log() const;
    [[nodiscard]] size_t logCount() const { return logLines; }
    /// The first line that contains the text.
    [[nodiscard]] std::optional<EngineLogLine> findLog(std::wstring_view part) const;
    void clearLog();

    /// All recorded calls in their order, or those of one operation.
    [[nodiscard]] std::vector<EngineCall> calls(std::string_view operation = {}) const;
    [[nodiscard]] std::vector<std::string> callTexts(std::string_view operation = {}) const;
    /// References held by others than the owner.
    [[nodiscard]] ULONG references() const { return referenceCount - 1; }

    /// The next request, or nothing while the queue is empty.
    std::optional<EngineRequest> takeRequest();
    /// Signalled while there may be a request.
    [[nodiscard]] HANDLE requestEvent() const { return requestArrived.get(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetPackageCount(DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetVariableNumeric(LPCWSTR, LONGLONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetVariableString(LPCWSTR name, LPWSTR value, DWORD* size) override;
    HRESULT STDMETHODCALLTYPE GetVariableVersion(LPCWSTR, DWORD64*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE FormatString(LPCWSTR in, LPWSTR out, DWORD* size) override;
    HRESULT STDMETHODCALLTYPE EscapeString(LPCWSTR in, LPWSTR out, DWORD* size) override;
    HRESULT STDMETHODCALLTYPE EvaluateCondition(LPCWSTR, BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Log(BOOTSTRAPPER_LOG_LEVEL level, LPCWSTR message) override;
    HRESULT STDMETHODCALLTYPE SendEmbeddedError(DWORD, LPCWSTR, DWORD, int*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SendEmbeddedProgress(DWORD progress, DWORD overall, int* result) override;
    HRESULT STDMETHODCALLTYPE SetUpdate(LPCWSTR localSource, LPCWSTR downloadSource, DWORD64 size,
                                        BOOTSTRAPPER_UPDATE_HASH_TYPE hashType, BYTE* hash, DWORD hashSize) override;
    HRESULT STDMETHODCALLTYPE SetLocalSource(LPCWSTR, LPCWSTR, LPCWSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetDownloadSource(LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetVariableNumeric(LPCWSTR name, LONGLONG value) override;
    HRESULT STDMETHODCALLTYPE SetVariableString(LPCWSTR name, LPCWSTR value) override;
    HRESULT STDMETHODCALLTYPE SetVariableVersion(LPCWSTR, DWORD64) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CloseSplashScreen() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Detect(HWND parent) override;
    HRESULT STDMETHODCALLTYPE Plan(BOOTSTRAPPER_ACTION action) override;
    HRESULT STDMETHODCALLTYPE Elevate(HWND) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Apply(HWND parent) override;
    HRESULT STDMETHODCALLTYPE Quit(DWORD exitCode) override;
    HRESULT STDMETHODCALLTYPE LaunchApprovedExe(HWND, LPCWSTR, LPCWSTR, DWORD) override { return E_NOTIMPL; }

  private:
    void record(const char* operation, std::vector<std::wstring> arguments);
    void post(EngineRequest::Kind kind, DWORD argument);

    mutable Lock lock;
    std::vector<EngineCall> recorded;
    std::vector<EngineLogLine> logged;
    std::vector<EngineRequest> queue;
    Handle requestArrived;
    std::atomic<ULONG> referenceCount = 1;
    std::atomic<size_t> logLines = 0;
    std::atomic<bool> recordsKept = true;
};

}  // namespace pdx
