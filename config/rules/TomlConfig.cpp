#include "config/rules/TomlConfig.h"

#include <exception>
#include <utility>

#include "config/rules/NestingGuard.h"

namespace pdx {

TomlConfigVisitor::TomlConfigVisitor(ConfigMap& filled, std::string topEntry, std::string pathBelow,
                                     const ConfigErrorSink& errorSink)
    : map(&filled), root(std::move(topEntry)), path(std::move(pathBelow)), sink(&errorSink) {}

std::string TomlConfigVisitor::fullKey() const {
    if (path.empty()) return root;
    return path.front() == '.' ? root + path : root + '.' + path;
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
        NestingGuard guard(stream.rdbuf());
        std::istream guarded(&guard);
        const auto tree = cpptoml::parser(guarded).parse();
        for (const auto& [key, value] : *tree) value->accept(TomlConfigVisitor(map, key, {}, sink));
    } catch (const std::exception& error) {
        sink("LoadConfigStream", error.what());
    }
    return map;
}

}  // namespace pdx
