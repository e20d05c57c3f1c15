#include "core/rules/StartupSteps.h"

#include <gtest/gtest.h>

#include <string>

#include "core/rules/RunValue.h"

namespace pdx {
namespace {

TEST(Startup, AcceptsSystemsByTheirVersion) {
    const std::tuple<SystemFacts, bool, bool> rows[] = {
        {{true, 10, 0}, false, true}, {{true, 6, 3}, false, true},  {{true, 6, 2}, true, true},
        {{true, 6, 1}, true, true},   {{true, 6, 2}, false, false}, {{true, 6, 1}, false, false},
        {{true, 6, 0}, true, false},  {{true, 5, 2}, true, false},  {{false, 10, 0}, true, false},
        {{false, 6, 1}, true, false}, {{true, 0, 0}, true, false},
    };
    for (const auto& [system, allowWindows7, accepted] : rows)
        EXPECT_EQ(isSystemAccepted(system, allowWindows7), accepted)
            << system.is64Bit << system.major << "." << system.minor << allowWindows7;
}

TEST(Startup, ChoosesTheFirstStepByAsFewFactsAsPossible) {
    constexpr int32_t install = BOOTSTRAPPER_ACTION_INSTALL;
    const struct {
        int32_t action;
        bool installed, fromDisc, ignore, prompt, recorded, gatelink;
        StartupStep step;
        const char* asked;  ///< the facts that were looked for, by their first letters
    } rows[] = {
        {BOOTSTRAPPER_ACTION_UNINSTALL, true, true, true, true, true, true, StartupStep::detect, ""},
        {BOOTSTRAPPER_ACTION_REPAIR, true, false, true, false, false, false, StartupStep::detect, ""},
        {install, true, true, true, true, true, true, StartupStep::launchClientFromDisc, ""},
        {install, true, false, true, true, true, true, StartupStep::quit, ""},
        {install, true, false, false, true, false, false, StartupStep::promptBastionUninstall, "p"},
        {install, true, false, false, false, true, true, StartupStep::promptAlreadyInstalled, "p"},
        {install, false, true, true, true, true, true, StartupStep::quit, "rg"},
        {install, false, false, true, false, true, false, StartupStep::detect, "rg"},
        {install, false, false, true, false, false, true, StartupStep::detect, "r"},
        {install, false, false, false, false, true, true, StartupStep::detect, ""},
    };
    for (size_t i = 0; i < std::size(rows); ++i) {
        const auto& row = rows[i];
        std::string asked;
        const auto fact = [&asked](char name, bool holds) {
            return [&asked, name, holds] { return asked += name, holds; };
        };
        const StartupFacts facts = {row.action,
                                    row.installed,
                                    row.fromDisc,
                                    row.ignore,
                                    fact('p', row.prompt),
                                    fact('r', row.recorded),
                                    fact('g', row.gatelink)};
        EXPECT_EQ(chooseStartupStep(facts), row.step) << i;
        EXPECT_EQ(asked, row.asked) << i;
    }
}

TEST(Startup, RecognisesTheClientsPackage) {
    constexpr int32_t install = BOOTSTRAPPER_ACTION_INSTALL;
    EXPECT_TRUE(isClientPackagePresent(install, L"PalisadeApp.msi", BOOTSTRAPPER_PACKAGE_STATE_UNKNOWN));
    EXPECT_TRUE(isClientPackagePresent(install, L"PalisadeApp.msi", BOOTSTRAPPER_PACKAGE_STATE_PRESENT));
    EXPECT_FALSE(isClientPackagePresent(install, L"PalisadeApp.msi", BOOTSTRAPPER_PACKAGE_STATE_ABSENT));
    for (const wchar_t* id : {L"palisadeapp.msi", L"PalisadeApp.msi2", L"PalisadeApp.ms", L""})
        EXPECT_FALSE(isClientPackagePresent(install, id, BOOTSTRAPPER_PACKAGE_STATE_PRESENT));
    EXPECT_FALSE(
        isClientPackagePresent(BOOTSTRAPPER_ACTION_UNINSTALL, L"PalisadeApp.msi", BOOTSTRAPPER_PACKAGE_STATE_PRESENT));
}

TEST(RunValue, BelongsToTheFolderOfItsProgram) {
    EXPECT_TRUE(isRunValueOfFolder(L"\"c:\\games\\palisade\\launcher.exe\" -silent", L"c:\\games\\palisade\\"));
    EXPECT_FALSE(isRunValueOfFolder(L"\"c:\\other\\launcher.exe\"", L"c:\\games\\palisade\\"));
    EXPECT_FALSE(isRunValueOfFolder(L"anything", L""));
    EXPECT_EQ(runCommand(L"C:\\P\\l.exe"), L"\"C:\\P\\l.exe\" -silent");
}

}  // namespace
}  // namespace pdx
