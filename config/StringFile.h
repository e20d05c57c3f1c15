// One language's file of strings, read by the system's XML reader.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace pdx {

/// Texts by key, the keys lowered.
using StringTable = std::map<std::wstring, std::wstring>;

/// The strings of a file (XML in UTF-8): the text of every "locString" directly below a "locStrings", by its attribute
/// "Key". Of two equal keys the last one wins. A node without the attribute is skipped, other nodes mean nothing.
/// Nothing when the XML is malformed or the reader cannot be had; nothing is logged. COM must be initialised on the
/// calling thread.
std::optional<StringTable> readStringFile(std::string_view xml);

}  // namespace pdx
