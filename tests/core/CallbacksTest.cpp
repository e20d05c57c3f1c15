// Each callback against its row: the number and the context that it records, what it shows, what it returns.
#include <gtest/gtest.h>

#include <algorithm>
#include <exception>
#include <functional>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>

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
template <typename Result, typename Interface, typename... Arguments>
std::optional<int> callWithArguments(App& app, int32_t number,
                                     Result (STDMETHODCALLTYPE Interface::*callback)(Arguments...)) {
    size_t place = 0;
    [[maybe_unused]] const auto argument = [&]<typename Type>(std::type_identity<Type>) {
        return number == ordinary ? placed<Type>(++place) : wild<Type>(number);
    };
    const std::tuple<Arguments...> arguments{argument(std::type_identity<Arguments>())...};
    const auto call = [&](auto... each) { return (app.*callback)(each...); };
    if constexpr (!std::is_void_v<Result>) return std::apply(call, arguments);
    std::apply(call, arguments);
    return std::nullopt;
}

template <auto callback>
std::optional<int> call(App& app, int32_t number) {
    return callWithArguments(app, number, callback);
}

/// Attributes as JSON, or as "name=value name=value" with numbers, booleans and texts without quotes.
Json attributesOf(const std::string& text) {
    if (text.starts_with("{")) return Json::parse(text);
    Json attributes = Json::object();
    std::istringstream words(text);
    for (std::string name, value; std::getline(words >> std::ws, name, '=') && words >> value;) {
        attributes[name] = Json::parse(value, nullptr, false);
        if (attributes[name].is_discarded()) attributes[name] = value;
    }
    return attributes;
}

/// A new context, or attributes that join the earlier one.
struct Context {
    bool isNew;
    Json attributes;
};
Context starts(const char* attributes) { return {true, attributesOf(attributes)}; }
Context adds(const char* attributes) { return {false, attributesOf(attributes)}; }

struct Wanted {
    int result = 0;
    const char* shown = nullptr;  ///< by the user interface
};
Wanted returns(int result) { return {.result = result}; }
Wanted shows(const char* step) { return {.shown = step}; }

struct Row {
    int number;  ///< 0: the callback leaves the number alone
    std::optional<int> (*call)(App& app, int32_t wildNumber);
    Context context;
    Wanted wanted = {};
};

const Row rows[] = {
    {4, call<&App::OnDetectBegin>, starts("inst=true npkg=2")},
    {5, call<&App::OnDetectForwardCompatibleBundle>, adds("bund=a relt=2 btag=c perm=true vers=5.0.0.5 reco=6"),
     returns(6)},
    {6, call<&App::OnDetectUpdateBegin>, starts("locn=a reco=2"), returns(2)},
    {7, call<&App::OnDetectUpdate>, adds("locn=a size=562949953421314 vers=3.0.0.3 titl=d summ=e type=f cont=g reco=8"),
     returns(8)},
    {8, call<&App::OnDetectUpdateComplete>, adds("stat=a7ff0643 locn=b")},
    {9, call<&App::OnDetectRelatedBundle>, adds("bund=a relt=2 btag=c perm=true vers=5.0.0.5 oper=6")},
    {10, call<&App::OnDetectPackageBegin>, starts("pkid=a")},
    {11, call<&App::OnDetectCompatiblePackage>, adds("pkid=a cpid=b")},
    {12, call<&App::OnDetectRelatedMsiPackage>, adds("pkid=a pcod=b perm=true vers=4.0.0.4 oper=5")},
    {13, call<&App::OnDetectTargetMsiPackage>, adds("pkid=a pcod=b ptch=3")},
    {14, call<&App::OnDetectMsiFeature>, adds("pkid=a ftid=b ftst=3")},
    {15, call<&App::OnDetectPackageComplete>, adds("pkid=a pkst=a7ff0643")},
    {16, call<&App::OnDetectComplete>, adds("stat=a7ff0643")},
    {17, call<&App::OnPlanBegin>, starts("npkg=1")},
    {18, call<&App::OnPlanRelatedBundle>, adds("bund=a rqst=4")},
    {19, call<&App::OnPlanPackageBegin>, starts("pkid=a rqst=4")},
    {20, call<&App::OnPlanCompatiblePackage>, adds("pkid=a rqst=4")},
    {21, call<&App::OnPlanTargetMsiPackage>, adds("pkid=a pcod=b rqst=4")},
    {22, call<&App::OnPlanMsiFeature>, adds("pkid=a ftid=b rqst=3")},
    {23, call<&App::OnPlanPackageComplete>, adds("pkid=a plst=a7ff0643 pkst=3 rqst=4 exec=5 rlbk=6")},
    {24, call<&App::OnPlanComplete>, adds("plst=a7ff0643"), shows("planComplete(a7ff0643)")},
    {25, call<&App::OnApplyBegin>, starts("")},
    {26, call<&App::OnApplyPhaseCount>, adds("nphs=1")},
    {27, call<&App::OnElevate>, starts("")},
    {0, call<&App::OnProgress>, adds("cpct=1 opct=2")},
    {0, call<&App::OnError>, adds("")},
    {28, call<&App::OnRegisterBegin>, starts("")},
    {29, call<&App::OnRegisterComplete>, adds("stat=a7ff0643")},
    {30, call<&App::OnCacheBegin>, starts(""), shows("cacheBegin()")},
    {31, call<&App::OnCachePackageBegin>, starts("pkid=a cpld=2 pcsz=844424930131971")},
    {32, call<&App::OnCacheAcquireBegin>, starts("pkid=a plid=b caop=3 psrc=d"), shows("cacheAcquireBegin(3, d)")},
    {0, call<&App::OnCacheAcquireProgress>, adds("dnld=844424930131971 totl=1125899906842628 opct=5"),
     shows("cacheAcquireProgress(5)")},
    {33, call<&App::OnResolveSource>, adds("pkid=a plid=b lsrc=c dsrc=d"), returns(resultDownload)},
    {34, call<&App::OnCacheAcquireComplete>, adds("pkid=a plid=b cast=a7ff0643 reco=4"),
     shows("cacheAcquireComplete(a7ff0643, 4)")},
    {35, call<&App::OnCacheVerifyBegin>, starts("pkid=a plid=b")},
    {36, call<&App::OnCacheVerifyComplete>, adds("pkid=a plid=b stat=a7ff0643 reco=4"), returns(4)},
    {37, call<&App::OnCachePackageComplete>, adds("pkid=a stat=a7ff0643 reco=3"), returns(3)},
    {38, call<&App::OnCacheComplete>, adds("stat=a7ff0643")},
    {39, call<&App::OnExecuteBegin>, starts("npkg=1"), shows("executeBegin(1)")},
    {40, call<&App::OnExecutePackageBegin>, starts("pkid=a exec=true"), shows("executePackageBegin(true, a)")},
    {41, call<&App::OnExecutePatchTarget>, adds("pkid=a pcod=b")},
    {0, call<&App::OnExecuteProgress>, adds("ppct=2 opct=3"), shows("executeProgress(2, 3)")},
    {0, call<&App::OnExecuteMsiMessage>,
     adds(R"({"msifatal":{"imsg":2,"flag":3,"mesg":"d","args":"a, b, c, d, e","reco":7}})"), returns(7)},
    {0, call<&App::OnExecuteFilesInUse>, adds(R"({"fuse":"a, b"})")},
    {42, call<&App::OnExecutePackageComplete>, adds("pkid=a stat=a7ff0643 rstr=3 reco=4"), returns(4)},
    {43, call<&App::OnExecuteComplete>, adds("stat=a7ff0643")},
    {44, call<&App::OnUnregisterBegin>, starts("")},
    {45, call<&App::OnUnregisterComplete>, adds("stat=a7ff0643")},
    {46, call<&App::OnApplyComplete>, adds("stat=a7ff0643 rstr=2"), shows("applyComplete(a7ff0643, 2)")},
    {47, call<&App::OnLaunchApprovedExeBegin>, starts("")},
    {48, call<&App::OnLaunchApprovedExeComplete>, adds("stat=a7ff0643 pid=2")},
    {3, call<&App::OnSystemShutdown>, adds("ends=1 reco=2"), returns(IDOK)},
};

TEST(Callbacks, RecordNumberAndContext) {
    for (const Row& row : rows) {
        SCOPED_TRACE(&row - rows);
        ProbedRun probed;
        App& app = probed.callbacks();
        app.OnDetectPackageBegin(L"seed");
        app.OnProgress(1, 2);
        const Json seed = {{"pkid", "seed"}, {"cpct", 1}, {"opct", 2}};
        ASSERT_EQ(probed.app().state().context, seed);

        EXPECT_EQ(row.call(app, ordinary).value_or(0), row.wanted.result);

        Json expected = row.context.isNew ? Json::object() : seed;
        expected.update(row.context.attributes);
        EXPECT_EQ(probed.app().state().context, expected);
        EXPECT_EQ(probed.app().state().lastOperation, Operation{row.number ? row.number : 10});
        EXPECT_EQ(present, BOOTSTRAPPER_REQUEST_STATE_PRESENT) << "no requested state is written to";
        EXPECT_EQ(local, BOOTSTRAPPER_FEATURE_STATE_LOCAL);
    }
}

TEST(Callbacks, PassArgumentsToTheUserInterfaceAndReturnItsAnswer) {
    for (const Row& row : rows) {
        if (!row.wanted.shown) continue;
        SCOPED_TRACE(row.wanted.shown);
        ProbedRun probed;
        probed.callbacks().OnStartup();
        probed.ui.answer = [](auto&, const auto&) { return dialogsAnswer; };
        EXPECT_EQ(row.call(probed.app(), ordinary).value_or(dialogsAnswer), dialogsAnswer);
        EXPECT_EQ(probed.ui.texts(), std::vector<std::string>{row.wanted.shown});
    }
}

TEST(Callbacks, ReturnACancelExceptInRollback) {
    ProbedRun probed;
    App& app = probed.callbacks();
    EXPECT_EQ(app.OnReserved57(1), 0);
    ASSERT_TRUE(probed.app().PromptCancel(nullptr, TRUE, nullptr, nullptr));
    ASSERT_TRUE(probed.app().PromptCancel(nullptr, FALSE, nullptr, nullptr)) << "a second one asks nobody";
    EXPECT_EQ(app.OnReserved57(1), IDCANCEL);
    EXPECT_EQ(app.OnReserved58(1, 2), IDCANCEL);
    EXPECT_EQ(app.OnReserved59(1, 2, 3), IDCANCEL);
    EXPECT_EQ(app.OnResolveSource(L"p", L"l", L"s", nullptr), IDCANCEL);
    // A payload is still assigned its source; the end of the session has rules of its own.
    const auto ignoresCancel = {call<&App::OnResolveSource>, call<&App::OnSystemShutdown>};
    for (const Row& row : rows)
        if (std::ranges::find(ignoresCancel, row.call) == ignoresCancel.end()) {
            EXPECT_EQ(row.call(app, ordinary).value_or(IDCANCEL), IDCANCEL) << row.number;
        }
    app.OnExecutePackageBegin(L"p", FALSE);
    EXPECT_EQ(app.OnReserved57(1), 0);
    const auto endsRollback = {call<&App::OnExecutePackageBegin>, call<&App::OnSystemShutdown>};
    for (const Row& row : rows)
        if (std::ranges::find(endsRollback, row.call) == endsRollback.end()) {
            EXPECT_EQ(row.call(app, ordinary).value_or(0), row.wanted.result) << row.number << " in rollback";
        }
}

TEST(Callbacks, AcceptNullsAndValuesOutOfRange) {
    ProbedRun probed;
    App& app = probed.callbacks();
    for (const Row& row : rows)
        for (const int32_t number : {0x12345678, -1}) row.call(app, number);
    EXPECT_TRUE(probed.engine.findLog(L"wzBundleId=, relationType=<INVALID>, wzBundleTag=, fPerMachine=false"));
    EXPECT_TRUE(probed.engine.findLog(L"wzPackageId=, pRequestedState=<INVALID>"));
    EXPECT_EQ(app.OnResolveSource(nullptr, nullptr, nullptr, L"http://x"), resultDownload);
    EXPECT_EQ(app.OnResolveSource(L"p", L"l", L"C:\\windows", L"http://x"), 0) << "a local source is not downloaded";
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

TEST(Callbacks, NoExceptionReachesTheEngine) {
    const auto exhausted = [] { throw std::bad_alloc(); };
    const auto last = {call<&App::OnDetectComplete>, call<&App::OnPlanComplete>, call<&App::OnApplyComplete>};
    for (const Row& row : rows) {
        if (row.number == 0) continue;  // most of these log nothing
        SCOPED_TRACE(row.number);
        FailingRun probed(exhausted);
        const int answer = row.call == call<&App::OnResolveSource>          ? 0
                           : row.call == call<&App::OnCacheAcquireComplete> ? 4
                                                                            : row.wanted.result;
        EXPECT_EQ(row.call(probed.callbacks(), ordinary).value_or(0), answer);
        EXPECT_EQ(probed.app().state().status.status, E_OUTOFMEMORY);
        EXPECT_EQ(probed.logger->errors.size(), 1u);
        // No other callback would plan, apply or quit.
        const bool ends = std::ranges::find(last, row.call) != last.end();
        EXPECT_EQ(probed.engine.callTexts("Quit"),
                  ends ? std::vector<std::string>{"Quit(1)"} : std::vector<std::string>());
    }
    FailingRun probed([] { throw std::runtime_error("reason"); });
    EXPECT_EQ(probed.callbacks().OnStartup(), E_FAIL) << "without a detection the engine would wait for ever";
    EXPECT_EQ(probed.app().state().status.status, E_FAIL);
    EXPECT_EQ(probed.logger->errors, std::vector<std::string>{"Callback failed: slot=3; error=reason"});
    EXPECT_EQ(probed.callbacks().OnShutdown(), 0);
}

TEST(Callbacks, ADeliberateCrashPassesTheGuard) {
    FailingRun probed([] { crashOnException([] { throw std::out_of_range("meant"); }); });
    const DWORD crashCode = CrashingThread::run([&probed] { probed.callbacks().OnDetectBegin(TRUE, 1); });
    EXPECT_EQ(crashCode, uncaughtExceptionCode);
    EXPECT_EQ(crashCode & 0xC0000000, 0xC0000000) << "of severity error";
    EXPECT_TRUE(probed.logger->errors.empty());
}

}  // namespace
}  // namespace pdx
