// The command lines of the programs that a run starts: its elevated copy and the client.
#pragma once

#include <functional>
#include <string>

namespace pdx {

/// The command line of the elevated copy: "NAME=value" for each bundle variable that crosses over, in a fixed order and
/// separated by blanks. A value with blanks or quotes is quoted by the rules of CommandLineToArgvW: otherwise part of
/// it would be a switch of the elevated engine. Any other value is unchanged, also an empty one.
std::wstring relaunchParameters(const std::function<std::wstring(const wchar_t* variable)>& valueOf);

/// The client's argument that logs the user in, its code quoted in the same way; empty without a code.
std::wstring authArgument(const std::wstring& code);

}  // namespace pdx
