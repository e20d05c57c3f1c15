// The process's settings: loading and reading them.
#pragma once

#include <atomic>
#include <istream>
#include <string>
#include <string_view>

#include "config/rules/ConfigMap.h"
#include "platform/ServiceHolder.h"

namespace pdx {

/// The settings, null until loadConfiguration. A map never changes: any thread reads it without a lock.
extern ServiceHolder<ConfigMap> g_config;

/// Whether this machine may change the configuration: the embedded certificate chains to a root that it trusts. Then
/// the override file is read, a failed signature is only logged, and each event of the Brisk service has a mark.
extern std::atomic<bool> g_configurable;

/// Checks the certificate chain and sets g_configurable. The first check takes a while: the system may read all
/// certificates for it.
void determineConfigurable();

/// Loads all layers and makes them the process's settings; readers of earlier ones keep those. Called once for each
/// application object, on the engine's thread, after determineConfigurable.
void loadConfiguration(bool thinInstaller);

/// The settings of a TOML text that could be read; none if the text could not be parsed. Logs each fault at ERROR.
/// The text of an exception is the line's format, so a "%" in it counts.
ConfigMap LoadConfigStream(std::istream& stream);
/// The settings of a file; empty if it cannot be opened. The path is UTF-8.
ConfigMap loadConfigFile(const char* path);

// Values of the process's settings; the default also before they are loaded.
std::string getConfigString(std::string_view key, std::string_view defaultText = {});
std::wstring getConfigWideString(std::string_view key, std::wstring_view defaultText = {});
bool getConfigBool(std::string_view key, bool defaultValue);

}  // namespace pdx
