// The order in which the layers of settings replace each other, and values derived from them.
#pragma once

#include <functional>
#include <string>

#include "config/rules/ConfigMap.h"

namespace pdx {

/// The override file, read only on a machine that trusts the embedded certificate.
inline constexpr const char* overrideConfigPath = R"(C:\PalisadeDesktopDev\override.cfg)";

/// The sources of layers: an embedded file by name, a file on disk by path. A missing file is an empty map.
struct ConfigSources {
    std::function<ConfigMap(const char* name)> resource;
    std::function<ConfigMap(const char* path)> file;
};

/// All settings. From weakest to strongest: installer.cfg, the file of the environment, the override file, the values
/// set here. Without configurable the override file is not opened.
ConfigMap loadConfigLayers(const ConfigSources& sources, bool configurable, bool thinInstaller);

/// The installer version to report: the true one unless the settings replace it.
struct ReportedVersion {
    std::string version;
    bool overridden;
};

/// The override is used if it is not empty and the version to override is empty or the true one.
ReportedVersion reportedVersion(const std::string& trueVersion, const std::string& overridingVersion,
                                const std::string& versionToOverride);

}  // namespace pdx
