// The part of the registry that the library writes to: made before a run, compared after it.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace pdx {

/// The bundle's provider key.
inline constexpr const wchar_t* bundleKey = L"{0B6D4B7C-6C0E-4E63-9E0A-6E6B2F0A51D7}";

/// Each value and each empty key by its place, and whether the client's folder is there.
using RegistryState = nlohmann::json;

/// Makes registry and folder those of a machine with the client, or without, and gives that state.
RegistryState arrangeMachine(bool installed);
RegistryState readMachine();

/// Which of its first steps, before those that can fail, a run may have done: an uninstall marks the client as
/// unavailable, a repair also restores the bundle's own commands.
enum class FirstSteps { none, ofUninstall, ofRepair };

/// What may be there after a run.
struct AllowedStates {
    RegistryState before;
    RegistryState good;  ///< after a run of that kind without a fault
    FirstSteps firstSteps = FirstSteps::none;
    bool registryFails = false;  ///< the fault is one of the registry: each value alone is as before, as after, or gone
};

/// The first place that is half-written; empty if there is none.
std::string halfWritten(const AllowedStates& allowed, const RegistryState& after);

}  // namespace pdx
