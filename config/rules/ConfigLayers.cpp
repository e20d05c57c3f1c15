#include "config/rules/ConfigLayers.h"

#include <cpptoml.h>

namespace pdx {

ConfigMap loadConfigLayers(const ConfigSources& sources, bool configurable, bool thinInstaller) {
    ConfigMap config = sources.resource("installer.cfg");
    // The override file is read twice on purpose: here, so that it can choose the environment, and again below, so
    // that it beats the environment's file too.
    if (configurable) config.merge(sources.file(overrideConfigPath));
    const std::string environment = config.getString("app.environment");
    config.merge(sources.resource(environment == "production" ? "production.cfg" : "integration.cfg"));
    if (configurable) config.merge(sources.file(overrideConfigPath));
    // The environment that was chosen is the one that is reported, whatever the later layers hold.
    config.set("app.environment", cpptoml::make_value<std::string>(std::string(environment)));
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
