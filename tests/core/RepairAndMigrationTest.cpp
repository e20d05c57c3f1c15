// A repair and the move from the older client, flow by flow: what a run finds and what the user does, then what it
// shows, asks of the engine, starts and reports.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "config/Settings.h"
#include "platform/Files.h"
#include "platform/product/RegistryPaths.h"
#include "platform/Registry.h"
#include "platform/Text.h"
#include "tests/core/ApplicationProbe.h"
#include "tests/platform/Probe.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

using Variables = std::vector<std::pair<const wchar_t*, const wchar_t*>>;

constexpr int none = 0, launch = 1, repair = 2, uninstall = 1, notNow = 2;

const Variables repairs = {{L"PDX_REPAIR", L"1"}}, accepted = {{L"PDX_UNINSTALL_BASTION", L"1"}};
const Variables upgrades = {
    {L"PDX_MERIDIAN_UPGRADE", L"1"}, {L"KESTREL_AUTHCODE", L"geheim"}, {L"PDX_UNINSTALL_BASTION", L"kept"}};
const Variables moves = {{L"PDX_MERIDIAN_MODE", L"1"}, {L"PDX_UNINSTALL_BASTION", L"1"}};
const Variables movesOn = {{L"PDX_MERIDIAN_MODE", L"1"}};

const std::string client = "client(/checkForUpdate)", updated = "client(/checkForUpdate )";
const std::string updatedWithCode = "client(/checkForUpdate --authCode=geheim)", uninstaller = "uninstaller(/Silent)";
const std::string succeeds = "install inst.inst.succ", cancels = "install inst.inst.canc";
const std::string installs = "Detect Plan(5) Apply Quit(0)", repairCancels = "inst.repr.strt install inst.repr.canc";
const std::string repaired = "inst.repr.strt install inst.inst.strt install inst.repr.succ";

/// What a run finds, and what its user does.
struct Given {
    Variables variables = {};
    const wchar_t* location = L"client";  ///< the recorded one: below the test's folder, or a whole path
    bool older = true;                    ///< whether the older client is installed
    const char* settings = "enableMigration = true\npromptBastionUninstall = true\n";
    BOOTSTRAPPER_PACKAGE_STATE package = BOOTSTRAPPER_PACKAGE_STATE_ABSENT;
    BOOTSTRAPPER_ACTION action = BOOTSTRAPPER_ACTION_INSTALL;
    int answer = none;               ///< to the question
    std::string cancelAt = "never";  ///< a step of the user interface, or the beginning of a log line
};

/// What follows; blanks part the names.
struct Wanted {
    std::string shows = {};  ///< without what a callback shows
    std::string asks = "Quit(0)";
    std::string starts = {};
    std::string reports = succeeds;    ///< without the session
    const wchar_t* reloads = L"";      ///< the mode of the next life
    const wchar_t* removes = nullptr;  ///< PDX_UNINSTALL_BASTION
    bool clientLeft = true;
    HRESULT startup = S_OK;
};

struct Flow {
    const char* what;
    Given given;
    Wanted wanted;
};

const Flow flows[] = {
    // The installed client's question.
    {"start", {.answer = launch}, {.shows = "askInstalled", .starts = client}},
    {"start after the removal",
     {.variables = accepted, .answer = launch},
     {.shows = "askInstalled showBastionRemoval",
      .starts = uninstaller + " " + updated,
      .reports = "message " + succeeds}},
    {"repair",
     {.answer = repair},
     {.shows = "askInstalled", .asks = "Quit(0) Quit(0)", .reports = "", .reloads = L"PDX_REPAIR"}},
    {"neither", {}, {.shows = "askInstalled"}},
    {"not asked", {.variables = {{L"IGNORE_ALREADY_INSTALLED", L"1"}}}, {}},
    {"found by the engine",
     {.location = L"", .package = BOOTSTRAPPER_PACKAGE_STATE_PRESENT},
     {.shows = "askInstalled", .asks = "Detect Quit(0)"}},
    {"cancelled at the question",
     {.variables = accepted, .answer = launch, .cancelAt = "askInstalled"},
     {.shows = "askInstalled", .reports = cancels}},
    {"cancelled before the removal",
     {.variables = accepted, .answer = launch, .cancelAt = "settle 1"},
     {.shows = "askInstalled showBastionRemoval", .reports = cancels}},
    {"cancelled in the removal",
     {.variables = accepted, .answer = launch, .cancelAt = "settle 2"},
     {.shows = "askInstalled showBastionRemoval", .starts = uninstaller, .reports = "message " + cancels}},
    // The repair's second life.
    {"repair",
     {.variables = repairs},
     {.shows = "showRepairBeginning", .asks = installs, .reports = repaired, .clientLeft = false}},
    {"of an uninstall",
     {.variables = repairs, .action = BOOTSTRAPPER_ACTION_UNINSTALL},
     {.shows = "showRepairBeginning", .asks = installs, .reports = repaired, .clientLeft = false}},
    {"without a client",
     {.variables = repairs, .location = L""},
     {.shows = "showRepairBeginning", .asks = installs, .reports = repaired}},
    {"refused folder",
     {.variables = repairs, .location = L"C:\\"},
     {.shows = "showRepairBeginning showError",
      .asks = "",
      .reports = "inst.repr.strt install inst.repr.erro install inst.repr.fail",
      .startup = static_cast<HRESULT>(0xA7FF0BC9)}},
    {"cancelled before the clean-up",
     {.variables = repairs, .cancelAt = "settle 1"},
     {.shows = "showRepairBeginning", .reports = repairCancels}},
    {"cancelled in the clean-up",
     {.variables = repairs, .cancelAt = "Deleting service"},
     {.shows = "showRepairBeginning", .reports = repairCancels, .clientLeft = false}},
    // The offer to remove the older client, and the second life that does.
    {"remove",
     {.variables = upgrades, .answer = uninstall},
     {.shows = "askAboutBastion",
      .asks = "Quit(0) Quit(0)",
      .reports = "message",
      .reloads = L"PDX_MERIDIAN_MODE",
      .removes = L"1"}},
    {"not now",
     {.variables = upgrades, .answer = notNow},
     {.shows = "askAboutBastion", .starts = updatedWithCode, .reports = "message " + succeeds, .removes = L"0"}},
    {"no answer",
     {.variables = upgrades},
     {.shows = "askAboutBastion", .reports = "message " + succeeds, .removes = L"kept"}},
    {"cancelled at the offer",
     {.variables = upgrades, .answer = uninstall, .cancelAt = "askAboutBastion"},
     {.shows = "askAboutBastion", .reports = "message " + cancels, .removes = L"kept"}},
    {"without an older client", {.variables = upgrades, .older = false}, {.shows = "askInstalled"}},
    {"without the move",
     {.variables = upgrades, .settings = "enableMigration = false\npromptBastionUninstall = true\n"},
     {.shows = "askInstalled"}},
    {"without the prompt",
     {.variables = upgrades, .settings = "enableMigration = true\npromptBastionUninstall = false\n"},
     {.shows = "askInstalled"}},
    {"removal",
     {.variables = moves},
     {.shows = "showBastionRemoval", .starts = uninstaller + " " + updated, .reports = "message " + succeeds}},
    {"no removal", {.variables = movesOn}, {.starts = updated}},
};

void add(std::string& list, const std::string& name) { list += (list.empty() ? "" : " ") + name; }

/// Cancels at a line.
struct CancellingLogger : Logger {
    CancellingLogger(const std::string& beginning, RunControls& controls) : at(beginning), run(controls) {}
    void write(int32_t level, const char* function, int32_t line, const char* message) override {
        earlier->write(level, function, line, message);
        if (std::string_view(message).starts_with(at)) run.cancel(nullptr);
    }
    const std::string& at;
    RunControls& run;
    std::shared_ptr<Logger> earlier = g_logger.get();
};

std::wstring sampleProgram(const wchar_t* name) { return getModuleFilePath(std::wstring(L"harness\\client\\") + name); }

constexpr const wchar_t* notes = L"C:\\PalisadeTest\\launches.txt";

/// The starts that the sample programs have noted (harness/programs/client/Launches.h), without folders.
std::string notedPrograms() {
    std::string found;
    std::istringstream lines(readFile(notes));
    for (std::string line; std::getline(lines, line);) {
        const bool isClient = line.find("PalisadeLauncher.exe") != line.npos;
        const std::string arguments = line.substr(line.find(".exe\"") + 6);
        if (arguments != "last") add(found, (isClient ? "client(" : "uninstaller(") + arguments + ")");
    }
    return found;
}

/// Waits a while for the wanted ones. A program of the test's own starts after those of the run, and does not count.
std::string startedPrograms(const std::string& wanted) {
    waitFor(startProbe(L"last", sampleProgram(L"PalisadeLauncher.exe")));
    retryUntil([&] { return notedPrograms() == wanted; }, 500, 10);
    const std::string found = notedPrograms();
    DeleteFileW(notes);
    return found;
}

class RepairAndMigrationTest : public testing::Test {
  protected:
    RepairAndMigrationTest() { DeleteFileW(notes); }  // other tests start sample programs too
    /// A machine with both clients.
    void prepare(const Given& given) {
        keys.clear();
        const std::wstring location = given.location, older = folder.addFile(L"older\\Bastion.exe");
        folder.addFile(L"client\\file");
        CopyFileW(sampleProgram(L"BastionUninstall.exe").c_str(), folder.path(L"older\\BastionUninstall.exe").c_str(),
                  FALSE);
        RegistryKey product = RegistryKey::localMachine(view64).createSubKey(productKey, true);
        product.setValue(L"InstallLocation", location == L"client" ? folder.path(location) : location);
        product.setValue(L"LauncherAppPath", sampleProgram(L"PalisadeLauncher.exe"));
        RegistryKey bastion = RegistryKey::localMachine(view32).createSubKey(bastionKey, true);
        if (given.older) bastion.setValue(L"InstallSuccesfull", std::wstring(L"true"));
        bastion.setValue(L"BastionPath", older);
    }
    void play(const Given& given, const Wanted& wanted) {
        prepare(given);
        ProbedRun probed(given.action);
        const auto setVariables = [&] {
            probed.engine.variables.set(L"PDX_UNINSTALL_BASTION", std::wstring(L"0"));
            for (const auto& [name, value] : given.variables) probed.engine.variables.set(name, std::wstring(value));
        };
        setVariables();
        RunControls& controls = probed.app();
        setVariables();  // after the constructor's own
        std::istringstream settings(std::string("[app.meridian]\n") + given.settings);
        g_config.set(std::make_shared<ConfigMap>(LoadConfigStream(settings)));
        g_logger.set(std::make_shared<CancellingLogger>(given.cancelAt, controls));
        int settles = 0;
        const auto reach = [&](const std::string& step) {
            if (step == given.cancelAt) controls.cancel(nullptr);
        };
        probed.ui.onSettle = [&](RunControls&) { reach("settle " + std::to_string(++settles)); };
        probed.ui.answer = [&](RunControls& run, const UiScript::Step& step) {
            reach(step.name);
            return step.name.starts_with("ask") ? given.answer : UiScript::driveOn(run, step);
        };
        const RunOutcome outcome = probed.run({.package = given.package});
        EXPECT_EQ(outcome.failure, "");
        EXPECT_EQ(outcome.startup, wanted.startup);
        EXPECT_EQ(outcome.shutdown, *wanted.reloads ? resultReloadBootstrapper : 0);
        g_logger.clear();
        check(wanted, probed);
    }
    void check(const Wanted& wanted, ProbedRun& probed) {
        std::string shown, asked, reported;
        for (const std::string& name : probed.ui.names())
            if (name.starts_with("ask") || name.starts_with("show")) add(shown, name);
        for (const EngineCall& call : probed.engine.calls())
            if (!call.operation.starts_with("Set"))
                add(asked, call.operation == "Quit" || call.operation == "Plan" ? call.text() : call.operation);
        for (const std::string& text : probed.reported()) {
            std::istringstream words(text);
            std::string sender, name;
            words >> sender >> name;
            if (!name.empty() && sender != "request" && !name.starts_with("inst.sess.")) add(reported, name);
        }
        EXPECT_EQ(shown, wanted.shows);
        EXPECT_EQ(asked, wanted.asks);
        EXPECT_EQ(reported, wanted.reports);
        EXPECT_EQ(startedPrograms(wanted.starts), wanted.starts);
        EXPECT_EQ(std::filesystem::exists(folder.path(L"client")), wanted.clientLeft);
        EXPECT_EQ(getEnvironmentText(L"PDX_INSTALL_LOCATION"), wanted.clientLeft ? L"" : folder.path(L"client"));
        for (const wchar_t* mode : {L"PDX_REPAIR", L"PDX_MERIDIAN_MODE"})
            EXPECT_EQ(getEnvironmentText(mode), wanted.reloads == std::wstring(mode) ? L"1" : L"");
        if (wanted.removes) {
            EXPECT_EQ(probed.engine.variables.text(L"PDX_UNINSTALL_BASTION"), wanted.removes);
        }
        for (const wchar_t* name : {L"PDX_REPAIR", L"PDX_MERIDIAN_MODE", L"PDX_INSTALL_LOCATION"})
            SetEnvironmentVariableW(name, nullptr);
    }

    const TestKeys keys{{L"Software\\Corvane Works", bastionKey}};
    const CurrentFolder before;
    TestFolder folder;
};

TEST_F(RepairAndMigrationTest, EachFlowShowsStartsAndReportsItsSteps) {
    for (const Flow& flow : flows) {
        SCOPED_TRACE(flow.what);
        play(flow.given, flow.wanted);
    }
}

}  // namespace
}  // namespace pdx
