#include "core/RunVariables.h"

#include "platform/Log.h"

namespace pdx {
namespace {

/// Reads a text of unknown size: first into 256 characters, then into the size that the engine names. Empty on any
/// failure.
template <typename Ask>
std::wstring askText(Ask ask) {
    std::wstring buffer(256, L'\0');
    auto size = static_cast<DWORD>(buffer.size());
    HRESULT hr = ask(buffer.data(), &size);
    if (hr == HRESULT_FROM_WIN32(ERROR_MORE_DATA)) {
        buffer.assign(size_t{size} + 1, L'\0');  // FormatString names the size without the end mark
        size = static_cast<DWORD>(buffer.size());
        hr = ask(buffer.data(), &size);
    }
    return SUCCEEDED(hr) ? std::wstring(buffer.c_str()) : std::wstring();
}

}  // namespace

std::wstring RunVariables::get(const std::wstring& name, bool format) const {
    std::wstring value =
        askText([&](LPWSTR buffer, DWORD* size) { return engine->GetVariableString(name.c_str(), buffer, size); });
    if (format)
        value = askText([&](LPWSTR buffer, DWORD* size) { return engine->FormatString(value.c_str(), buffer, size); });
    PDX_LOG(logInfo, "BootstrapperApplication::GetEngineVariable", "variable=[%ls]; result=[%ls]", name, value);
    return value;
}

void RunVariables::setInstallFolder(const std::wstring& folder) {
    std::wstring escaped(folder.size() * 4 + 1, L'\0');  // "[" becomes "[\[]"
    auto size = static_cast<DWORD>(escaped.size());
    const bool made = SUCCEEDED(engine->EscapeString(folder.c_str(), escaped.data(), &size));
    set(variable::installFolder, made ? escaped.c_str() : folder);
}

}  // namespace pdx
