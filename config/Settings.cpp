#include "config/Settings.h"

#include <fstream>

#include "config/Certificate.h"
#include "config/Resources.h"
#include "config/rules/ConfigLayers.h"
#include "config/rules/TomlConfig.h"
#include "platform/Log.h"

namespace pdx {

constinit ServiceHolder<ConfigMap> g_config;
constinit std::atomic<bool> g_configurable = false;

namespace {

/// The settings of an embedded file (resource type PDX_CONFIG), parsed without a copy; empty if it is missing.
ConfigMap loadConfigResource(const char* name) {
    ResourceStreamBuf buffer(loadResource({L"PDX_CONFIG", toWide(name)}));
    std::istream stream(&buffer);
    return LoadConfigStream(stream);
}

}  // namespace

void determineConfigurable() {
    g_configurable = chainsToTrustedRoot(loadCertificateResource(embeddedCertificateId).get());
}

void loadConfiguration(bool thinInstaller) {
    const ConfigSources sources{loadConfigResource, loadConfigFile};
    g_config.set(std::make_shared<ConfigMap>(loadConfigLayers(sources, g_configurable, thinInstaller)));
}

ConfigMap LoadConfigStream(std::istream& stream) {
    return parseConfig(stream, [](const char* function, const char* text) { PDX_LOG(logError, function, text); });
}

ConfigMap loadConfigFile(const char* path) {
    // Binary, because a text stream ends at the first Ctrl+Z.
    std::ifstream stream(toWide(path).c_str(), std::ios::in | std::ios::binary);
    return LoadConfigStream(stream);
}

std::string getConfigString(std::string_view key, std::string_view defaultText) {
    const auto config = g_config.get();
    return config ? config->getString(key, defaultText) : std::string(defaultText);
}

std::wstring getConfigWideString(std::string_view key, std::wstring_view defaultText) {
    const auto config = g_config.get();
    return config ? config->getWideString(key, defaultText) : std::wstring(defaultText);
}

bool getConfigBool(std::string_view key, bool defaultValue) {
    const auto config = g_config.get();
    return config ? config->getBool(key, defaultValue) : defaultValue;
}

}  // namespace pdx
