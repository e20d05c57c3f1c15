// The process's settings: how they are loaded, and how the rest of the system reads them.
#pragma once

#include <atomic>
#include <functional>
#include <istream>
#include <string>
#include <string_view>

#include "config/rules/ConfigMap.h"
#include "platform/ServiceHolder.h"

namespace pdx {

/// The settings, null until loadConfiguration. Never changed once it is here: any thread reads it without a lock.
extern ServiceHolder<ConfigMap> g_config;

/// Whether this machine may change the configuration: the embedded certificate chains to a root that it trusts.
extern std::atomic<bool> g_configurable;

/// Asks the system and sets g_configurable. The first look at its certificates takes a while: the system may read all
/// of them for it.
void determineConfigurable();

/// Loads all layers and makes them the process's settings; readers of earlier ones keep those. To be called once an
/// application object, on the engine's thread, with the bundle's answer to isThinInstaller. Where there is an override
/// file it asks whether it may be read; without one that makes no difference and is not asked.
void loadConfiguration(bool thinInstaller, const std::function<bool()>& isConfigurable);

/// The settings of a TOML text. Each fault is logged as an error, and the result is what could be read: nothing if the
/// text could not be parsed. An exception's text is the log's format, unchanged.
ConfigMap LoadConfigStream(std::istream& stream);
/// The settings of a file, which others may read meanwhile; empty if it cannot be opened. The path is UTF-8.
ConfigMap loadConfigFile(const char* path);

// What the process's settings say; the default also when there are none yet.
std::string getConfigString(std::string_view key, std::string_view defaultText = {});
std::wstring getConfigWideString(std::string_view key, std::wstring_view defaultText = {});
bool getConfigBool(std::string_view key, bool defaultValue);

}  // namespace pdx
