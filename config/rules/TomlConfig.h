// Parses a TOML text into a flat map of settings.
#pragma once

#include <cpptoml.h>

#include <functional>
#include <istream>
#include <string>

#include "config/rules/ConfigMap.h"

namespace pdx {

/// Receives an error to be logged: the name of the logging function, and the text, which is the log's format.
using ConfigErrorSink = std::function<void(const char* function, const char* text)>;

/// Walks one top-level entry of a parsed text and stores each scalar under its dotted key. Other nodes than scalars and
/// tables are reported and skipped.
class TomlConfigVisitor {
  public:
    TomlConfigVisitor(ConfigMap& filled, std::string topEntry, std::string pathBelow, const ConfigErrorSink& errorSink);

    // Called by the library's accept(), one for each kind of node.
    void visit(const cpptoml::value<std::string>& node);
    void visit(const cpptoml::value<int64_t>& node);
    void visit(const cpptoml::value<double>& node);
    void visit(const cpptoml::value<bool>& node);
    void visit(const cpptoml::table& node);
    void visit(const cpptoml::value<cpptoml::local_date>& node);
    void visit(const cpptoml::value<cpptoml::local_time>& node);
    void visit(const cpptoml::value<cpptoml::local_datetime>& node);
    void visit(const cpptoml::value<cpptoml::offset_datetime>& node);
    void visit(const cpptoml::array& node);
    void visit(const cpptoml::table_array& node);

  private:
    [[nodiscard]] std::string fullKey() const;
    void store(const cpptoml::base& node);
    void skip(const char* message);

    ConfigMap* map;
    std::string root;  ///< name of the top-level entry
    std::string path;  ///< dotted path below it, empty at the top
    const ConfigErrorSink* sink;
};

/// The settings of a TOML text. Never throws. A text of more than a megabyte, or with more than 500 opening brackets,
/// braces and dots, is refused as too large. This, a syntax error and exhausted memory are reported under the name
/// LoadConfigStream. The result is then the map so far, which is empty for a text that could not be parsed.
ConfigMap parseConfig(std::istream& stream, const ConfigErrorSink& sink);

}  // namespace pdx
