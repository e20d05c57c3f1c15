// One language's file of strings, read by the system's XML reader.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace pdx {

/// Texts by lower-cased key.
using StringTable = std::map<std::wstring, std::wstring>;

/// The strings of a file (XML in UTF-8): the text of every "locString" directly below a "locStrings", by its attribute
/// "Key". Of two equal keys the last one is used. Other nodes, and nodes without the attribute, are ignored. Nothing if
/// the XML is malformed or the reader is unavailable; logs nothing. COM must be initialised on the calling thread.
std::optional<StringTable> readStringFile(std::string_view xml);

}  // namespace pdx
