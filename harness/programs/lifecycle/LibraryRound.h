// One load of the shipped library, as the engine does it, and what has to hold afterwards.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace pdx {

enum class RoundKind { install, uninstall, download, packageFails, secondInstance, reload };

/// A library in the program's folder. The system finds it there by its bare name, until the first object is created.
inline constexpr const wchar_t* strayLibrary = L"stray.dll";
bool findsStrayLibrary();

const char* nameOf(RoundKind kind);

/// Copies the library into a folder of its own, as the engine unpacks it. Then loads it, runs its application with the
/// small engine, destroys that, frees the library and removes the folder. A reload does all from the load on a second
/// time, with the same engine. Gives what did not hold, a line each; after a failed
/// round also the end of the log.
std::vector<std::string> runRound(RoundKind kind, const std::filesystem::path& library,
                                  const std::filesystem::path& folder);

}  // namespace pdx
