#include "config/rules/ConfigLayers.h"

#include <cpptoml.h>

namespace pdx {

ConfigMap loadConfigLayers(const ConfigSources& sources, bool configurable, bool thinInstaller) {
    ConfigMap config = sources.resource("installer.cfg");
    // The override file is read twice on purpose: here it chooses the environment, below it replaces values of the
    // environment's file.
    if (configurable) config.merge(sources.file(overrideConfigPath));
    const std::string environment = config.getString("app.environment");
    config.merge(sources.resource(environment == "production" ? "production.cfg" : "integration.cfg"));
    if (configurable) config.merge(sources.file(overrideConfigPath));
    // Set again, because a later layer may contain another environment than the chosen one.
    config.set("app.environment", cpptoml::make_value(environment));
    config.set("app.installertype", cpptoml::make_value<std::string>(thinInstaller ? "thin" : "thick"));
    return config;
}

ReportedVersion reportedVersion(const std::string& trueVersion, const std::string& overridingVersion,
                                const std::string& versionToOverride) {
    const bool overridden =
        !overridingVersion.empty() && (versionToOverride.empty() || versionToOverride == trueVersion);
    return {overridden ? overridingVersion : trueVersion, overridden};
}

}  // namespace pdx
