// Reading a command line: bundle variables, the display, and the login code, which is hidden everywhere.
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

/// The display of a run towards the user. A newer installer that replaces another always has an embedded display, also
/// if the other was started quietly. It would then wait for a user who is absent. For such a run the last of the
/// engine's quiet and passive switches on the command line decides. The arguments are those after the program.
BOOTSTRAPPER_DISPLAY displayTowardsUser(BOOTSTRAPPER_DISPLAY display, BOOTSTRAPPER_RELATION_TYPE relation,
                                        std::span<const std::wstring> arguments);

/// The command line without the login code: in an argument as the system splits it, quoted or not, "####" replaces the
/// text after "KESTREL_AUTHCODE=". The line still shows that there is a code.
std::wstring hideAuthcode(std::wstring_view commandLine);
/// The same for arguments without the program before them.
std::wstring hideAuthcodeOfArguments(std::wstring_view arguments);

}  // namespace pdx
