// The small engine with operations that fail.
#pragma once

#include "harness/programs/engine/SmallEngine.h"
#include "harness/programs/faults/ImportHook.h"

namespace pdx {

/// Each refused operation does nothing.
class FaultyEngine : public SmallEngine {
  public:
    explicit FaultyEngine(ImportHook& hookUsed) : hook(hookUsed) {}

    HRESULT STDMETHODCALLTYPE GetVariableString(LPCWSTR name, LPWSTR value, DWORD* size) override {
        return hook.refuses("engine: GetVariableString") ? E_FAIL : SmallEngine::GetVariableString(name, value, size);
    }
    HRESULT STDMETHODCALLTYPE FormatString(LPCWSTR in, LPWSTR out, DWORD* size) override {
        return hook.refuses("engine: FormatString") ? E_FAIL : SmallEngine::FormatString(in, out, size);
    }
    HRESULT STDMETHODCALLTYPE EscapeString(LPCWSTR in, LPWSTR out, DWORD* size) override {
        return hook.refuses("engine: EscapeString") ? E_FAIL : SmallEngine::EscapeString(in, out, size);
    }
    HRESULT STDMETHODCALLTYPE Log(BOOTSTRAPPER_LOG_LEVEL level, LPCWSTR message) override {
        return hook.refuses("engine: Log") ? E_FAIL : SmallEngine::Log(level, message);
    }
    HRESULT STDMETHODCALLTYPE SetUpdate(LPCWSTR localSource, LPCWSTR downloadSource, DWORD64 size,
                                        BOOTSTRAPPER_UPDATE_HASH_TYPE type, BYTE* hash, DWORD hashSize) override {
        if (hook.refuses("engine: SetUpdate")) return E_FAIL;
        return SmallEngine::SetUpdate(localSource, downloadSource, size, type, hash, hashSize);
    }
    HRESULT STDMETHODCALLTYPE SetVariableNumeric(LPCWSTR name, LONGLONG value) override {
        return hook.refuses("engine: SetVariableNumeric") ? E_FAIL : SmallEngine::SetVariableNumeric(name, value);
    }
    HRESULT STDMETHODCALLTYPE SetVariableString(LPCWSTR name, LPCWSTR value) override {
        return hook.refuses("engine: SetVariableString") ? E_FAIL : SmallEngine::SetVariableString(name, value);
    }
    HRESULT STDMETHODCALLTYPE Detect(HWND parent) override {
        return hook.refuses("engine: Detect") ? E_FAIL : SmallEngine::Detect(parent);
    }
    HRESULT STDMETHODCALLTYPE Plan(BOOTSTRAPPER_ACTION action) override {
        return hook.refuses("engine: Plan") ? E_FAIL : SmallEngine::Plan(action);
    }
    HRESULT STDMETHODCALLTYPE Apply(HWND parent) override {
        return hook.refuses("engine: Apply") ? E_FAIL : SmallEngine::Apply(parent);
    }

  private:
    ImportHook& hook;
};

}  // namespace pdx
