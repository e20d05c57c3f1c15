// Parses a TOML text into a flat map of settings.
#pragma once

#include <functional>
#include <istream>

#include "config/rules/ConfigMap.h"

namespace pdx {

/// Receives an error to be logged: the name of the logging function, and the text, which is the log's format.
using ConfigErrorSink = std::function<void(const char* function, const char* text)>;

/// The settings of a TOML text. Never throws. Too large is a text of more than a megabyte, or with more than 500
/// brackets, braces and dots. That, a syntax error and exhausted memory are reported as from LoadConfigStream. The
/// result is then the map so far, which is empty for a text that could not be parsed.
ConfigMap parseConfig(std::istream& stream, const ConfigErrorSink& sink);

}  // namespace pdx
