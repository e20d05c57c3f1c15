// The bundle's variables, which the engine keeps.
#pragma once

#include <string>

#include "core/rules/VariableNames.h"
#include "platform/Engine.h"

namespace pdx {

/// Any thread. The engine outlives the object.
class RunVariables {
  public:
    explicit RunVariables(IBootstrapperEngine* owner) : engine(owner) {}

    /// A variable's value, resolved by the engine when format is set; empty on any failure. Logs the name and the
    /// value at INFO.
    [[nodiscard]] std::wstring get(const std::wstring& name, bool format = false) const;
    void set(const wchar_t* name, const std::wstring& text) { engine->SetVariableString(name, text.c_str()); }
    void setNumber(const wchar_t* name, int64_t number) { engine->SetVariableNumeric(name, number); }
    /// Sets InstallFolder, with brackets in the folder's name escaped: formatting gives this folder again.
    void setInstallFolder(const std::wstring& folder);

    /// On unless the variable is exactly "0": the bundle presets "0", and an unset or empty variable counts as on.
    [[nodiscard]] bool isRepair() const { return get(variable::repair) != L"0"; }
    /// The same for the migration from the older client.
    [[nodiscard]] bool isMeridianMode() const { return get(variable::meridianMode) != L"0"; }
    /// Whether this is the thin variant, which downloads its packages.
    [[nodiscard]] bool isThinInstaller() const { return get(variable::thickInstaller) == L"no"; }

  private:
    IBootstrapperEngine* engine;
};

}  // namespace pdx
