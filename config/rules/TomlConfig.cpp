#include "config/rules/TomlConfig.h"

#include <cpptoml.h>

#include <exception>
#include <stdexcept>
#include <streambuf>
#include <utility>

namespace pdx {
namespace {

/// Reads from another buffer without copying. Throws if the text is too long or could be nested too deeply. The parser
/// recurses at each level, and a stack overflow would end the engine's process. Each level needs at least one of the
/// counted characters, and up to 720 bytes of the megabyte of stack.
class BoundedBuffer : public std::streambuf {
  public:
    /// The source is not owned; null reads as empty.
    explicit BoundedBuffer(std::streambuf* readFrom) : source(readFrom) {}

  protected:
    int_type underflow() override { return source ? source->sgetc() : traits_type::eof(); }
    int_type uflow() override {
        const int_type next = source ? source->sbumpc() : traits_type::eof();
        if (next == traits_type::eof()) return next;
        constexpr size_t mostBytes = 1u << 20;
        constexpr size_t mostOpenings = 500;
        openings += next == '[' || next == '{' || next == '.';
        if (++bytes > mostBytes || openings > mostOpenings)
            throw std::length_error("The text is too long or nested too deeply");
        return next;
    }

  private:
    std::streambuf* source;
    size_t bytes = 0;
    size_t openings = 0;
};

/// Walks one top-level entry of a parsed text and stores each scalar under its dotted key. Other nodes than scalars and
/// tables are reported and skipped.
class TomlConfigVisitor {
  public:
    TomlConfigVisitor(ConfigMap& filled, std::string topEntry, std::string pathBelow, const ConfigErrorSink& errorSink)
        : map(filled), root(std::move(topEntry)), path(std::move(pathBelow)), sink(errorSink) {}

    // Called by the library's accept(), one for each kind of node.
    void visit(const cpptoml::value<std::string>& node) { store(node); }
    void visit(const cpptoml::value<int64_t>& node) { store(node); }
    void visit(const cpptoml::value<double>& node) { store(node); }
    void visit(const cpptoml::value<bool>& node) { store(node); }
    void visit(const cpptoml::table& node) {
        for (const auto& [key, value] : node)
            value->accept(TomlConfigVisitor(map, root, path.empty() ? key : path + '.' + key, sink));
    }
    void visit(const cpptoml::value<cpptoml::local_date>&) { skip("local_date"); }
    void visit(const cpptoml::value<cpptoml::local_time>&) { skip("local_time"); }
    void visit(const cpptoml::value<cpptoml::local_datetime>&) { skip("local_datetime"); }
    void visit(const cpptoml::value<cpptoml::offset_datetime>&) { skip("offset_datetime"); }
    void visit(const cpptoml::array&) { skip("array"); }
    void visit(const cpptoml::table_array&) { skip("table_array"); }

  private:
    void store(const cpptoml::base& node) {
        const char* const dot = path.empty() || path.front() == '.' ? "" : ".";
        map.set(root + dot + path, node.clone());
    }
    void skip(const std::string& type) {
        const std::string message = "Unsupported value type (" + type + ") found in config file";
        sink("pdx::services::settings::TomlConfigVisitor::visit", message.c_str());
    }

    ConfigMap& map;
    std::string root;  ///< name of the top-level entry
    std::string path;  ///< dotted path below it, empty at the top
    const ConfigErrorSink& sink;
};

}  // namespace

ConfigMap parseConfig(std::istream& stream, const ConfigErrorSink& sink) {
    ConfigMap map;
    try {
        BoundedBuffer buffer(stream.rdbuf());
        std::istream bounded(&buffer);
        const auto tree = cpptoml::parser(bounded).parse();
        for (const auto& [key, value] : *tree) value->accept(TomlConfigVisitor(map, key, {}, sink));
    } catch (const std::exception& error) {
        sink("LoadConfigStream", error.what());
    }
    return map;
}

}  // namespace pdx
