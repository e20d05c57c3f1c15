// Every callback against its row: the number and the context that it leaves, what it sends the dialog, what it returns.
#include <gtest/gtest.h>

#include <algorithm>
#include <exception>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

#include "tests/core/ApplicationProbe.h"
#include "tests/platform/Crash.h"

namespace pdx {
namespace {

using App = IBootstrapperApplication;
using Json = nlohmann::json;

constexpr auto failed = static_cast<HRESULT>(0xa7ff0643);  // the system has no text for it
constexpr int dialogsAnswer = 77;

LPCWSTR letters[] = {L"a", L"b", L"c", L"d", L"e", L"f", L"g", L"h"};
BOOTSTRAPPER_REQUEST_STATE present = BOOTSTRAPPER_REQUEST_STATE_PRESENT;
BOOTSTRAPPER_FEATURE_STATE local = BOOTSTRAPPER_FEATURE_STATE_LOCAL;

/// An argument that shows its place, from 1 on, among the callback's: "a" or 1 for the first, 2.0.0.2 for the second.
template <typename Type>
Type placed(size_t place) {
    if constexpr (std::is_same_v<Type, LPCWSTR>) return letters[place - 1];
    if constexpr (std::is_same_v<Type, LPCWSTR*>) return letters;
    if constexpr (std::is_same_v<Type, HRESULT>) return failed;
    if constexpr (std::is_same_v<Type, BOOTSTRAPPER_REQUEST_STATE*>) return &present;
    if constexpr (std::is_same_v<Type, BOOTSTRAPPER_FEATURE_STATE*>) return &local;
    if constexpr (std::is_same_v<Type, DWORD64>) return DWORD64{place} << 48 | place;
    if constexpr (std::is_integral_v<Type> || std::is_enum_v<Type>) return static_cast<Type>(place);
}

/// Zeros, null pointers and, where a member of an enumeration belongs, a number beyond all of them.
template <typename Type>
Type wild(int32_t number) {
    if constexpr (std::is_enum_v<Type>) return static_cast<Type>(number);
    return Type();
}

constexpr int32_t ordinary = 0;

/// Calls the callback with placed arguments or with wild ones; gives the result of one that has a result.
template <typename Result, typename Interface, typename... Arguments, size_t... places>
std::optional<int> callWithPlaces(App& app, int32_t number,
                                  Result (STDMETHODCALLTYPE Interface::*callback)(Arguments...),
                                  std::index_sequence<places...>) {
    const auto call = [&] {
        return number == ordinary ? (app.*callback)(placed<Arguments>(places + 1)...)
                                  : (app.*callback)(wild<Arguments>(number)...);
    };
    if constexpr (!std::is_void_v<Result>) return call();
    call();
    return std::nullopt;
}

template <typename Result, typename Interface, typename... Arguments>
std::optional<int> callWithArguments(App& app, int32_t number,
                                     Result (STDMETHODCALLTYPE Interface::*callback)(Arguments...)) {
    return callWithPlaces(app, number, callback, std::index_sequence_for<Arguments...>());
}

template <auto callback>
std::optional<int> call(App& app, int32_t number) {
    return callWithArguments(app, number, callback);
}

enum Rule { replace, merge };

struct Row {
    int number;  ///< 0: the callback leaves the number alone
    std::optional<int> (*call)(App& app, int32_t wildNumber);
    Rule rule;
    const char* attributes;  ///< of the context
    int result = 0;
    const char* shown = nullptr;  ///< by the user interface
};

const Row rows[] = {
    {4, call<&App::OnDetectBegin>, replace, R"({"inst":true,"npkg":2})"},
    {5, call<&App::OnDetectForwardCompatibleBundle>, merge,
     R"({"bund":"a","relt":2,"btag":"c","perm":true,"vers":"5.0.0.5","reco":6})", 6},
    {6, call<&App::OnDetectUpdateBegin>, replace, R"({"locn":"a","reco":2})", 2},
    {7, call<&App::OnDetectUpdate>, merge,
     R"({"locn":"a","size":562949953421314,"vers":"3.0.0.3","titl":"d","summ":"e","type":"f","cont":"g","reco":8})", 8},
    {8, call<&App::OnDetectUpdateComplete>, merge, R"({"stat":"a7ff0643","locn":"b"})"},
    {9, call<&App::OnDetectRelatedBundle>, merge,
     R"({"bund":"a","relt":2,"btag":"c","perm":true,"vers":"5.0.0.5","oper":6})"},
    {10, call<&App::OnDetectPackageBegin>, replace, R"({"pkid":"a"})"},
    {11, call<&App::OnDetectCompatiblePackage>, merge, R"({"pkid":"a","cpid":"b"})"},
    {12, call<&App::OnDetectRelatedMsiPackage>, merge,
     R"({"pkid":"a","pcod":"b","perm":true,"vers":"4.0.0.4","oper":5})"},
    {13, call<&App::OnDetectTargetMsiPackage>, merge, R"({"pkid":"a","pcod":"b","ptch":3})"},
    {14, call<&App::OnDetectMsiFeature>, merge, R"({"pkid":"a","ftid":"b","ftst":3})"},
    {15, call<&App::OnDetectPackageComplete>, merge, R"({"pkid":"a","pkst":"a7ff0643"})"},
    {16, call<&App::OnDetectComplete>, merge, R"({"stat":"a7ff0643"})"},
    {17, call<&App::OnPlanBegin>, replace, R"({"npkg":1})"},
    {18, call<&App::OnPlanRelatedBundle>, merge, R"({"bund":"a","rqst":4})"},
    {19, call<&App::OnPlanPackageBegin>, replace, R"({"pkid":"a","rqst":4})"},
    {20, call<&App::OnPlanCompatiblePackage>, merge, R"({"pkid":"a","rqst":4})"},
    {21, call<&App::OnPlanTargetMsiPackage>, merge, R"({"pkid":"a","pcod":"b","rqst":4})"},
    {22, call<&App::OnPlanMsiFeature>, merge, R"({"pkid":"a","ftid":"b","rqst":3})"},
    {23, call<&App::OnPlanPackageComplete>, merge,
     R"({"pkid":"a","plst":"a7ff0643","pkst":3,"rqst":4,"exec":5,"rlbk":6})"},
    {24, call<&App::OnPlanComplete>, merge, R"({"plst":"a7ff0643"})", 0, "planComplete(a7ff0643)"},
    {25, call<&App::OnApplyBegin>, replace, "{}"},
    {26, call<&App::OnApplyPhaseCount>, merge, R"({"nphs":1})"},
    {27, call<&App::OnElevate>, replace, "{}"},
    {0, call<&App::OnProgress>, merge, R"({"cpct":1,"opct":2})"},
    {0, call<&App::OnError>, merge, "{}"},
    {28, call<&App::OnRegisterBegin>, replace, "{}"},
    {29, call<&App::OnRegisterComplete>, merge, R"({"stat":"a7ff0643"})"},
    {30, call<&App::OnCacheBegin>, replace, "{}", 0, "cacheBegin()"},
    {31, call<&App::OnCachePackageBegin>, replace, R"({"pkid":"a","cpld":2,"pcsz":844424930131971})"},
    {32, call<&App::OnCacheAcquireBegin>, replace, R"({"pkid":"a","plid":"b","caop":3,"psrc":"d"})", 0,
     "cacheAcquireBegin(3, d)"},
    {0, call<&App::OnCacheAcquireProgress>, merge, R"({"dnld":844424930131971,"totl":1125899906842628,"opct":5})", 0,
     "cacheAcquireProgress(5)"},
    {33, call<&App::OnResolveSource>, merge, R"({"pkid":"a","plid":"b","lsrc":"c","dsrc":"d"})", resultDownload},
    {34, call<&App::OnCacheAcquireComplete>, merge, R"({"pkid":"a","plid":"b","cast":"a7ff0643","reco":4})", 0,
     "cacheAcquireComplete(a7ff0643, 4)"},
    {35, call<&App::OnCacheVerifyBegin>, replace, R"({"pkid":"a","plid":"b"})"},
    {36, call<&App::OnCacheVerifyComplete>, merge, R"({"pkid":"a","plid":"b","stat":"a7ff0643","reco":4})", 4},
    {37, call<&App::OnCachePackageComplete>, merge, R"({"pkid":"a","stat":"a7ff0643","reco":3})", 3},
    {38, call<&App::OnCacheComplete>, merge, R"({"stat":"a7ff0643"})"},
    {39, call<&App::OnExecuteBegin>, replace, R"({"npkg":1})", 0, "executeBegin(1)"},
    {40, call<&App::OnExecutePackageBegin>, replace, R"({"pkid":"a","exec":true})", 0, "executePackageBegin(true, a)"},
    {41, call<&App::OnExecutePatchTarget>, merge, R"({"pkid":"a","pcod":"b"})"},
    {0, call<&App::OnExecuteProgress>, merge, R"({"ppct":2,"opct":3})", 0, "executeProgress(2, 3)"},
    {0, call<&App::OnExecuteMsiMessage>, merge,
     R"({"msifatal":{"imsg":2,"flag":3,"mesg":"d","args":"a, b, c, d, e","reco":7}})", 7},
    {0, call<&App::OnExecuteFilesInUse>, merge, R"({"fuse":"a, b"})"},
    {42, call<&App::OnExecutePackageComplete>, merge, R"({"pkid":"a","stat":"a7ff0643","rstr":3,"reco":4})", 4},
    {43, call<&App::OnExecuteComplete>, merge, R"({"stat":"a7ff0643"})"},
    {44, call<&App::OnUnregisterBegin>, replace, "{}"},
    {45, call<&App::OnUnregisterComplete>, merge, R"({"stat":"a7ff0643"})"},
    {46, call<&App::OnApplyComplete>, merge, R"({"stat":"a7ff0643","rstr":2})", 0, "applyComplete(a7ff0643, 2)"},
    {47, call<&App::OnLaunchApprovedExeBegin>, replace, "{}"},
    {48, call<&App::OnLaunchApprovedExeComplete>, merge, R"({"stat":"a7ff0643","pid":2})"},
    {3, call<&App::OnSystemShutdown>, merge, R"({"ends":1,"reco":2})", IDOK},
};

TEST(Callbacks, LeaveNumberAndContextOfTheirRow) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.attributes);
        ProbedRun probed;
        App& app = probed.callbacks();
        app.OnDetectPackageBegin(L"seed");
        app.OnProgress(1, 2);
        const Json seed = {{"pkid", "seed"}, {"cpct", 1}, {"opct", 2}};
        ASSERT_EQ(probed.app().state().context, seed);

        EXPECT_EQ(row.call(app, ordinary).value_or(0), row.result);

        Json expected = row.rule == replace ? Json::object() : seed;
        expected.update(Json::parse(row.attributes));
        EXPECT_EQ(probed.app().state().context, expected);
        EXPECT_EQ(probed.app().state().lastOperation, Operation{row.number ? row.number : 10});
        EXPECT_EQ(present, BOOTSTRAPPER_REQUEST_STATE_PRESENT) << "no requested state is written to";
        EXPECT_EQ(local, BOOTSTRAPPER_FEATURE_STATE_LOCAL);
    }
}

TEST(Callbacks, HandTheirArgumentsToTheUserInterfaceAndReturnItsAnswer) {
    for (const Row& row : rows) {
        if (!row.shown) continue;
        SCOPED_TRACE(row.attributes);
        ProbedRun probed;
        probed.callbacks().OnStartup();
        probed.ui.answer = [](auto&, const auto&) { return dialogsAnswer; };
        EXPECT_EQ(row.call(probed.app(), ordinary).value_or(dialogsAnswer), dialogsAnswer);
        EXPECT_EQ(probed.ui.texts(), std::vector<std::string>{row.shown});
    }
}

TEST(Callbacks, AnswerACancelButNotInRollback) {
    ProbedRun probed;
    App& app = probed.callbacks();
    EXPECT_EQ(app.OnReserved57(1), 0);
    ASSERT_TRUE(probed.app().PromptCancel(nullptr, TRUE, nullptr, nullptr));
    ASSERT_TRUE(probed.app().PromptCancel(nullptr, FALSE, nullptr, nullptr)) << "a second one asks nobody";
    EXPECT_EQ(app.OnReserved57(1), IDCANCEL);
    EXPECT_EQ(app.OnReserved58(1, 2), IDCANCEL);
    EXPECT_EQ(app.OnReserved59(1, 2, 3), IDCANCEL);
    EXPECT_EQ(app.OnResolveSource(L"p", L"l", L"s", nullptr), IDCANCEL);
    // A payload still gets its source; the end of the session has rules of its own.
    const auto hearsNoCancel = {call<&App::OnResolveSource>, call<&App::OnSystemShutdown>};
    for (const Row& row : rows)
        if (std::ranges::find(hearsNoCancel, row.call) == hearsNoCancel.end()) {
            EXPECT_EQ(row.call(app, ordinary).value_or(IDCANCEL), IDCANCEL) << row.number;
        }
    app.OnExecutePackageBegin(L"p", FALSE);
    EXPECT_EQ(app.OnReserved57(1), 0);
    const auto endsRollback = {call<&App::OnExecutePackageBegin>, call<&App::OnSystemShutdown>};
    for (const Row& row : rows)
        if (std::ranges::find(endsRollback, row.call) == endsRollback.end()) {
            EXPECT_EQ(row.call(app, ordinary).value_or(0), row.result) << row.number << " in rollback";
        }
}

TEST(Callbacks, TakeNullsAndValuesOutOfRange) {
    ProbedRun probed;
    App& app = probed.callbacks();
    for (const Row& row : rows)
        for (const int32_t number : {0x12345678, -1}) row.call(app, number);
    EXPECT_TRUE(probed.engine.findLog(L"wzBundleId=, relationType=<INVALID>, wzBundleTag=, fPerMachine=false"));
    EXPECT_TRUE(probed.engine.findLog(L"wzPackageId=, pRequestedState=<INVALID>"));
    EXPECT_EQ(app.OnResolveSource(nullptr, nullptr, nullptr, L"http://x"), resultDownload);
    EXPECT_EQ(app.OnResolveSource(L"p", L"l", L"C:\\windows", L"http://x"), 0) << "what is there is not fetched";
    app.OnError(static_cast<BOOTSTRAPPER_ERROR_TYPE>(-2), nullptr, 0xFFFFFFFF, nullptr, 0xFFFFFFFF, 3, nullptr, 0);
    LPCWSTR holes[] = {nullptr, L"x", nullptr};
    app.OnExecuteMsiMessage(nullptr, 0x08000000, 0, nullptr, 3, holes, 0);
    EXPECT_EQ(probed.app().state().context["msiact"]["args"], ", x, ");
    app.OnExecuteMsiMessage(nullptr, -1, 0, nullptr, 3, nullptr, 0);
    app.OnExecuteFilesInUse(nullptr, 2, nullptr);
    EXPECT_TRUE(probed.engine.findLog(L"(BootstrapperApplication::OnExecuteFilesInUse:"));
    EXPECT_FALSE(probed.engine.findLog(L"Callback failed"));
}

/// Fails at the first line of every callback, and keeps the errors that are logged.
struct FailingLogger : Logger {
    void write(int32_t level, const char*, int32_t, const char* message) override {
        if (level == logError) errors.emplace_back(message);
        if (level == logTrace || std::string_view(message).starts_with("[STARTUP]")) fail();
    }
    explicit FailingLogger(std::function<void()> failure) : fail(std::move(failure)) {}
    std::function<void()> fail;
    std::vector<std::string> errors;
};

/// A run whose application's callbacks fail.
struct FailingRun : ProbedRun {
    explicit FailingRun(std::function<void()> failure) : logger(std::make_shared<FailingLogger>(std::move(failure))) {
        app();
        g_logger.set(logger);
    }
    ~FailingRun() { g_logger.clear(); }
    std::shared_ptr<FailingLogger> logger;
};

TEST(Callbacks, KeepTheirExceptionsFromTheEngine) {
    const auto exhausted = [] { throw std::bad_alloc(); };
    const auto last = {call<&App::OnDetectComplete>, call<&App::OnPlanComplete>, call<&App::OnApplyComplete>};
    for (const Row& row : rows) {
        if (row.number == 0) continue;  // most of these log nothing
        SCOPED_TRACE(row.number);
        FailingRun probed(exhausted);
        const int answer = row.call == call<&App::OnResolveSource>          ? 0
                           : row.call == call<&App::OnCacheAcquireComplete> ? 4
                                                                            : row.result;
        EXPECT_EQ(row.call(probed.callbacks(), ordinary).value_or(0), answer);
        EXPECT_EQ(probed.app().state().status.status, E_OUTOFMEMORY);
        EXPECT_EQ(probed.logger->errors.size(), 1u);
        // Nobody else would drive the run on.
        const bool ends = std::ranges::find(last, row.call) != last.end();
        EXPECT_EQ(probed.engine.callTexts("Quit"),
                  ends ? std::vector<std::string>{"Quit(1)"} : std::vector<std::string>());
    }
    FailingRun probed([] { throw std::runtime_error("said"); });
    EXPECT_EQ(probed.callbacks().OnStartup(), E_FAIL) << "without a detection the engine would wait for ever";
    EXPECT_EQ(probed.app().state().status.status, E_FAIL);
    EXPECT_EQ(probed.logger->errors, std::vector<std::string>{"Callback failed: slot=3; error=said"});
    EXPECT_EQ(probed.callbacks().OnShutdown(), 0);
}

TEST(Callbacks, LetPassWhatIsToEndInACrash) {
    FailingRun probed([] { crashOnException([] { throw std::out_of_range("meant"); }); });
    const DWORD crashCode = CrashingThread::run([&probed] { probed.callbacks().OnDetectBegin(TRUE, 1); });
    EXPECT_EQ(crashCode, uncaughtExceptionCode);
    EXPECT_EQ(crashCode & 0xC0000000, 0xC0000000) << "of severity error";
    EXPECT_TRUE(probed.logger->errors.empty());
}

}  // namespace
}  // namespace pdx
