// What a command line says: bundle variables, the display, and the login code that is shown nowhere.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "platform/rules/EngineTypes.h"

namespace pdx {

/// A command line argument as a bundle variable: the text before and after its first "=". Nothing if it begins with "-"
/// or "/" or holds no "=".
std::optional<std::pair<std::wstring, std::wstring>> variableOfArgument(std::wstring_view argument);

/// The display that a run has towards the user. A newer installer that replaces another always gets an embedded one,
/// also when the other was started quietly; it would wait for a user who is not there. For such a run the last of the
/// engine's own quiet and passive switches on the command line decides. The arguments are those after the program.
BOOTSTRAPPER_DISPLAY displayTowardsUser(BOOTSTRAPPER_DISPLAY display, BOOTSTRAPPER_RELATION_TYPE relation,
                                        std::span<const std::wstring> arguments);

/// The command line without the login code: in an argument as the system splits it, however it is quoted, all after
/// "KESTREL_AUTHCODE=" becomes "####". Only that there is a code stays.
std::wstring hideAuthcode(std::wstring_view commandLine);
/// The same of the arguments alone, without the program before them.
std::wstring hideAuthcodeOfArguments(std::wstring_view arguments);

}  // namespace pdx
