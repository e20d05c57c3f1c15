// What a run hands to the programs that it starts in its place: the raised copy of itself, and the client.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace pdx {

/// The command line of the raised copy: "NAME=value" for each bundle variable that crosses over, in a fixed order and
/// separated by blanks. Values go over as they are.
std::wstring relaunchParameters(const std::function<std::wstring(const wchar_t* variable)>& valueOf);

/// The client's argument that logs the user in; empty without a code.
std::wstring authArgument(std::wstring_view code);

}  // namespace pdx
