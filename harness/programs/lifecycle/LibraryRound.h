// One load of the shipped library, as the engine does it, and what has to hold afterwards.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace pdx {

enum class RoundKind { install, uninstall, download, packageFails, secondInstance, reload };

/// Lies beside the program. The system finds it there by its bare name, until the library has been asked for an object.
inline constexpr const wchar_t* strayLibrary = L"stray.dll";
bool findsStrayLibrary();

const char* nameOf(RoundKind kind);

/// Copies the library into a folder of its own under the temporary folder, as the engine unpacks it, loads it, makes
/// the application, runs it with the small engine, destroys it, frees the library and takes the folder away. A reload
/// does all from the load on a second time, with the same engine. Gives what did not hold, a line each; in a failed
/// round the end of the log stands behind.
std::vector<std::string> runRound(RoundKind kind, const std::filesystem::path& library,
                                  const std::filesystem::path& folder);

}  // namespace pdx
