#include "harness/programs/engine/SmallEngine.h"

#include <algorithm>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "platform/Text.h"

namespace pdx {

namespace {

constexpr auto moreData = static_cast<HRESULT>(0x800700EA);
constexpr auto notFound = static_cast<HRESULT>(0x80070490);

bool isEmpty(LPCWSTR text) { return !text || !*text; }

std::wstring shown(LPCWSTR text) { return text ? text : L"null"; }

std::wstring shown(HWND window) { return std::to_wstring(reinterpret_cast<uintptr_t>(window)); }

/// Copies text as the engine does: what fits and a zero, the rest of the buffer cleared. The size changes only when it
/// was too small, or when there was no buffer. It then counts the zero for a variable's value, and does not for a
/// formatted text: a second call with just that size gets the same answer.
enum class SizeCounts { withZero, withoutZero };

HRESULT copyOut(const std::wstring& text, LPWSTR buffer, DWORD* size, SizeCounts counts) {
    if (buffer && *size > 0) {
        const size_t copied = std::min<size_t>(text.size(), *size - 1);
        std::copy_n(text.begin(), copied, buffer);
        std::fill(buffer + copied, buffer + *size, L'\0');
    }
    if (buffer && *size > text.size()) return S_OK;
    *size = text.size() + (counts == SizeCounts::withZero);
    return moreData;
}

}  // namespace

std::string EngineCall::text() const {
    std::string text = operation + '(';
    for (const auto& argument : arguments) {
        if (&argument != &arguments.front()) text += ", ";
        text += toUtf8(argument);
    }
    return text + ')';
}

SmallEngine::SmallEngine() : requestArrived(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
    if (!requestArrived) throw std::runtime_error("no event for the engine's queue");
}

std::vector<EngineLogLine> SmallEngine::log() const {
    const std::lock_guard guard(lock);
    return logged;
}

std::optional<EngineLogLine> SmallEngine::findLog(std::wstring_view part) const {
    const std::lock_guard guard(lock);
    const auto found =
        std::ranges::find_if(logged, [&](const auto& line) { return line.text.find(part) != line.text.npos; });
    if (found == logged.end()) return std::nullopt;
    return *found;
}

void SmallEngine::clearLog() {
    const std::lock_guard guard(lock);
    logged.clear();
}

std::vector<EngineCall> SmallEngine::calls(std::string_view operation) const {
    const std::lock_guard guard(lock);
    std::vector<EngineCall> result;
    std::ranges::copy_if(recorded, std::back_inserter(result),
                         [&](const auto& call) { return operation.empty() || call.operation == operation; });
    return result;
}

std::vector<std::string> SmallEngine::callTexts(std::string_view operation) const {
    std::vector<std::string> texts;
    for (const auto& call : calls(operation)) texts.push_back(call.text());
    return texts;
}

std::optional<EngineRequest> SmallEngine::takeRequest() {
    const std::lock_guard guard(lock);
    if (queue.empty()) return std::nullopt;
    const auto request = queue.front();
    queue.erase(queue.begin());
    return request;
}

void SmallEngine::record(const char* operation, std::vector<std::wstring> arguments) {
    if (!recordsKept) return;
    const std::lock_guard guard(lock);
    recorded.push_back({operation, std::move(arguments)});
}

void SmallEngine::post(EngineRequest::Kind kind, DWORD argument) {
    {
        const std::lock_guard guard(lock);
        queue.push_back({kind, argument});
    }
    SetEvent(requestArrived.get());
}

HRESULT SmallEngine::QueryInterface(REFIID interfaceId, void** object) {
    if (!object) return E_INVALIDARG;
    const bool known = interfaceId == IID_IUnknown || interfaceId == IID_IBootstrapperEngine;
    *object = known ? this : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG SmallEngine::AddRef() { return ++referenceCount; }

ULONG SmallEngine::Release() { return --referenceCount; }

HRESULT SmallEngine::GetVariableString(LPCWSTR name, LPWSTR value, DWORD* size) {
    if (isEmpty(name) || !size) return E_INVALIDARG;
    const auto text = variables.text(name);
    return text ? copyOut(*text, value, size, SizeCounts::withZero) : notFound;
}

HRESULT SmallEngine::FormatString(LPCWSTR in, LPWSTR out, DWORD* size) {
    if (isEmpty(in) || !size) return E_INVALIDARG;
    return copyOut(variables.format(in), out, size, SizeCounts::withoutZero);
}

HRESULT SmallEngine::EscapeString(LPCWSTR in, LPWSTR out, DWORD* size) {
    if (isEmpty(in) || !size) return E_INVALIDARG;
    return copyOut(EngineVariables::escape(in), out, size, SizeCounts::withoutZero);
}

HRESULT SmallEngine::Log(BOOTSTRAPPER_LOG_LEVEL level, LPCWSTR message) {
    ++logLines;
    if (!recordsKept) return S_OK;
    const std::lock_guard guard(lock);
    logged.push_back({level, message ? message : L""});
    return S_OK;
}

HRESULT SmallEngine::SendEmbeddedProgress(DWORD progress, DWORD overall, int* result) {
    record("SendEmbeddedProgress", {std::to_wstring(progress), std::to_wstring(overall)});
    if (SUCCEEDED(answers.embeddedProgress)) *result = answers.embeddedResult;
    return answers.embeddedProgress;
}

HRESULT SmallEngine::SetUpdate(LPCWSTR localSource, LPCWSTR downloadSource, DWORD64 size,
                               BOOTSTRAPPER_UPDATE_HASH_TYPE hashType, BYTE* hash, DWORD hashSize) {
    record("SetUpdate", {shown(localSource), shown(downloadSource), std::to_wstring(size), std::to_wstring(hashType),
                         hash ? L"hash" : L"null", std::to_wstring(hashSize)});
    return answers.setUpdate;
}

HRESULT SmallEngine::SetVariableNumeric(LPCWSTR name, LONGLONG value) {
    record("SetVariableNumeric", {shown(name), std::to_wstring(value)});
    if (isEmpty(name)) return E_INVALIDARG;
    variables.set(name, std::to_wstring(value));
    return S_OK;
}

HRESULT SmallEngine::SetVariableString(LPCWSTR name, LPCWSTR value) {
    record("SetVariableString", {shown(name), shown(value)});
    if (isEmpty(name)) return E_INVALIDARG;
    // A null value removes the variable.
    value ? variables.set(name, value) : variables.erase(name);
    return S_OK;
}

HRESULT SmallEngine::Detect(HWND parent) {
    record("Detect", {shown(parent)});
    if (answers.refused == "Detect") return E_FAIL;
    post(EngineRequest::Kind::detect, 0);
    return S_OK;
}

HRESULT SmallEngine::Plan(BOOTSTRAPPER_ACTION action) {
    record("Plan", {std::to_wstring(action)});
    if (answers.refused == "Plan") return E_FAIL;
    post(EngineRequest::Kind::plan, action);
    return S_OK;
}

HRESULT SmallEngine::Apply(HWND parent) {
    record("Apply", {shown(parent)});
    if (answers.refused == "Apply") return E_FAIL;
    post(EngineRequest::Kind::apply, 0);
    return S_OK;
}

HRESULT SmallEngine::Quit(DWORD exitCode) {
    record("Quit", {std::to_wstring(exitCode)});
    post(EngineRequest::Kind::quit, exitCode);
    return S_OK;
}

}  // namespace pdx
