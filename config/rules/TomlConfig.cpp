#include "config/rules/TomlConfig.h"

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

}  // namespace

TomlConfigVisitor::TomlConfigVisitor(ConfigMap& filled, std::string topEntry, std::string pathBelow,
                                     const ConfigErrorSink& errorSink)
    : map(&filled), root(std::move(topEntry)), path(std::move(pathBelow)), sink(&errorSink) {}

std::string TomlConfigVisitor::fullKey() const {
    if (path.empty()) return root;
    return path.front() == '.' ? root + path : root + '.' + path;  // a quoted key may begin with "."
}

void TomlConfigVisitor::store(const cpptoml::base& node) { map->set(fullKey(), node.clone()); }

void TomlConfigVisitor::skip(const char* message) {
    (*sink)("pdx::services::settings::TomlConfigVisitor::visit", message);
}

void TomlConfigVisitor::visit(const cpptoml::value<std::string>& node) { store(node); }
void TomlConfigVisitor::visit(const cpptoml::value<int64_t>& node) { store(node); }
void TomlConfigVisitor::visit(const cpptoml::value<double>& node) { store(node); }
void TomlConfigVisitor::visit(const cpptoml::value<bool>& node) { store(node); }

void TomlConfigVisitor::visit(const cpptoml::table& node) {
    for (const auto& [key, value] : node)
        value->accept(TomlConfigVisitor(*map, root, path.empty() ? key : path + '.' + key, *sink));
}

void TomlConfigVisitor::visit(const cpptoml::value<cpptoml::local_date>&) {
    skip("Unsupported value type (local_date) found in config file");
}
void TomlConfigVisitor::visit(const cpptoml::value<cpptoml::local_time>&) {
    skip("Unsupported value type (local_time) found in config file");
}
void TomlConfigVisitor::visit(const cpptoml::value<cpptoml::local_datetime>&) {
    skip("Unsupported value type (local_datetime) found in config file");
}
void TomlConfigVisitor::visit(const cpptoml::value<cpptoml::offset_datetime>&) {
    skip("Unsupported value type (offset_datetime) found in config file");
}
void TomlConfigVisitor::visit(const cpptoml::array&) { skip("Unsupported value type (array) found in config file"); }
void TomlConfigVisitor::visit(const cpptoml::table_array&) {
    skip("Unsupported value type (table_array) found in config file");
}

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
