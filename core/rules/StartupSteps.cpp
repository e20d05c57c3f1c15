#include "core/rules/StartupSteps.h"

#include "platform/product/ClientPackage.h"

namespace pdx {
namespace {

using Step = StartupStep;
using Facts = StartupFacts;

struct StartupRow {
    bool (*matches)(const Facts&);
    Step step;
};

/// The first row that matches decides.
constexpr StartupRow startupRows[] = {
    {[](const Facts& f) { return f.action != BOOTSTRAPPER_ACTION_INSTALL; }, Step::detect},
    {[](const Facts& f) { return f.installed && f.fromDisc; }, Step::launchClientFromDisc},
    {[](const Facts& f) { return f.installed && f.ignoreAlreadyInstalled; }, Step::quit},
    {[](const Facts& f) { return f.installed && f.bastionToPrompt(); }, Step::promptBastionUninstall},
    {[](const Facts& f) { return f.installed; }, Step::promptAlreadyInstalled},
    {[](const Facts& f) { return f.ignoreAlreadyInstalled && f.bastionRecorded() && f.gatelinkRegistered(); },
     Step::quit},
    {[](const Facts&) { return true; }, Step::detect},
};

}  // namespace

StartupStep chooseStartupStep(const StartupFacts& facts) {
    for (const StartupRow& row : startupRows)
        if (row.matches(facts)) return row.step;
    return Step::detect;
}

bool isClientPackagePresent(int32_t action, std::wstring_view packageId, BOOTSTRAPPER_PACKAGE_STATE state) {
    return action == BOOTSTRAPPER_ACTION_INSTALL && packageId == clientPackageId &&
           state != BOOTSTRAPPER_PACKAGE_STATE_ABSENT;
}

}  // namespace pdx
