#include "platform/Log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <mutex>
#include <thread>
#include <vector>

#include "platform/Paths.h"
#include "platform/Processes.h"

namespace pdx {
namespace {

struct EngineLine {
    int32_t level;
    std::wstring text;
    bool operator==(const EngineLine&) const = default;
};

/// An engine that keeps what is logged, and answers everything with a failure.
class LoggingEngine : public IBootstrapperEngine {
  public:
    std::vector<EngineLine> lines;
    Lock lock;

    HRESULT STDMETHODCALLTYPE Log(BOOTSTRAPPER_LOG_LEVEL level, LPCWSTR text) override {
        const std::lock_guard guard(lock);
        lines.push_back({level, text});
        return E_FAIL;
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetPackageCount(DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetVariableNumeric(LPCWSTR, LONGLONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetVariableString(LPCWSTR, LPWSTR, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetVariableVersion(LPCWSTR, DWORD64*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE FormatString(LPCWSTR, LPWSTR, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EscapeString(LPCWSTR, LPWSTR, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EvaluateCondition(LPCWSTR, BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SendEmbeddedError(DWORD, LPCWSTR, DWORD, int*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SendEmbeddedProgress(DWORD, DWORD, int*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetUpdate(LPCWSTR, LPCWSTR, DWORD64, BOOTSTRAPPER_UPDATE_HASH_TYPE, BYTE*,
                                        DWORD) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetLocalSource(LPCWSTR, LPCWSTR, LPCWSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetDownloadSource(LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetVariableNumeric(LPCWSTR, LONGLONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetVariableString(LPCWSTR, LPCWSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetVariableVersion(LPCWSTR, DWORD64) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CloseSplashScreen() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Detect(HWND) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Plan(BOOTSTRAPPER_ACTION) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Elevate(HWND) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Apply(HWND) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Quit(DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE LaunchApprovedExe(HWND, LPCWSTR, LPCWSTR, DWORD) override { return E_NOTIMPL; }
};

class LogTest : public testing::Test {
  protected:
    LogTest() { g_logger.set(std::make_shared<BootstrapperLogger>(&engine)); }
    ~LogTest() override { g_logger.clear(); }

    /// The line's beginning up to the function's name.
    static std::wstring head(const wchar_t* word) {
        return std::wstring(L"PDXBA") + (isElevated() ? L"*" : L" ") + L" " + word + L" (";
    }

    LoggingEngine engine;
};

TEST_F(LogTest, GivesEachLevelToTheEngineAndDropsWhatIsAboveTheHighest) {
    for (const int32_t level : {0, 1, 2, 3, 4, 5, 6, 99999, -1, INT32_MIN}) logMessage(level, "f", 7, "m");
    const std::vector<EngineLine> expected = {
        {4, head(L"ERROR") + L"f:7) m"}, {1, head(L"WARN ") + L"f:7) m"}, {1, head(L"INFO ") + L"f:7) m"},
        {3, head(L"DEBUG") + L"f:7) m"}, {2, head(L"TRACE") + L"f:7) m"}, {2, head(L"TRACE") + L"f:7) m"},
        {2, head(L"TRACE") + L"f:7) m"},
    };
    EXPECT_EQ(engine.lines, expected);
}

TEST_F(LogTest, FormatsNarrowAndWideTextAndFillsInTheLine) {
    const int32_t line = __LINE__ + 1;
    PDX_LOG(logInfo, "Klasse::größe", "%s|%ls|%08x|%d%%", "ä€", L"ö\U0001F600", 0xA7FF0BC9u, -5);
    ASSERT_EQ(engine.lines.size(), 1u);
    EXPECT_EQ(engine.lines[0].text,
              head(L"INFO ") + L"Klasse::größe:" + std::to_wstring(line) + L") ä€|ö\U0001F600|a7ff0bc9|-5%");
}

TEST_F(LogTest, SurvivesEveryMessage) {
    std::string percents;
    for (int i = 0; i < 500; ++i) percents += "%s %n%-*d";
    const std::wstring loneSurrogate = {L'a', wchar_t{0xD800}, L'b'};
    const struct {
        std::string format;
        std::wstring message;
    } cases[] = {
        {std::string(5000, 'a'), std::wstring(4095, L'a')},
        {percents, std::wstring(percents.begin(), percents.begin() + 4095)},
        {"50% of %s", L"50% of %s"},
        {"", {}},
        // A character of three bytes that the cut goes through is no character any more.
        {std::string(4094, 'a') + "\xE2\x82\xAC", std::wstring(4094, L'a') + L"\xFFFD"},
    };
    for (const auto& row : cases) {
        logMessage(logTrace, "f", 1, row.format.c_str());
        EXPECT_EQ(engine.lines.back().text, head(L"TRACE") + L"f:1) " + row.message);
    }
    PDX_LOG(logTrace, "f", "%ls %s %ls", loneSurrogate, static_cast<const char*>(nullptr),
            static_cast<const wchar_t*>(nullptr));
    EXPECT_THAT(engine.lines.back().text, testing::EndsWith(L") a\xFFFD"
                                                            L"b (null) (null)"));
}

TEST_F(LogTest, MarksEveryLineOfTheProcessAlike) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([] {
            for (int number = 0; number < 50; ++number) PDX_LOG(logInfo, "f", "%d", number);
        });
    for (std::thread& thread : threads) thread.join();
    ASSERT_EQ(engine.lines.size(), 200u);
    for (const EngineLine& line : engine.lines) EXPECT_THAT(line.text, testing::StartsWith(head(L"INFO ")));
}

TEST_F(LogTest, TakesTheUserOutOfTheMessageAndNotOutOfTheFunction) {
    const std::wstring profile = getProfilePath();
    const std::wstring user = getUserName();
    ASSERT_FALSE(profile.empty());
    ASSERT_FALSE(user.empty());
    ASSERT_TRUE(profile.ends_with(L"\\" + user)) << "the test's user has an ordinary profile";
    const std::wstring scrubbed = profile.substr(0, profile.size() - user.size()) + L"####\\x";
    std::wstring forward = profile + L"\\x";
    std::ranges::replace(forward, L'\\', L'/');
    std::wstring scrubbedForward = scrubbed;
    std::ranges::replace(scrubbedForward, L'\\', L'/');

    EXPECT_EQ(scrubProfilePath(profile + L"\\x"), scrubbed);
    EXPECT_EQ(scrubProfilePath(forward), scrubbedForward);
    EXPECT_EQ(scrubProfilePath(user), user);

    logMessage(logInfo, toUtf8(profile + L"\\f").c_str(), 1, "a %ls\\x", profile);
    EXPECT_EQ(engine.lines.back().text, head(L"INFO ") + profile + L"\\f:1) a " + scrubbed);
}

TEST(LogWithoutEngine, ThrowsTheLineAway) {
    BootstrapperLogger logger(nullptr);
    logger.write(logError, "f", 1, "m");
}

/// An argument that tells when it is looked at.
struct WatchedText {
    bool& touched;
    operator std::wstring_view() const {
        touched = true;
        return L"text";
    }
};

TEST(LogWithoutLogger, DoesNotTouchTheArguments) {
    bool touched = false;
    g_logger.clear();
    PDX_LOG(logError, "f", "%ls", WatchedText{touched});
    EXPECT_FALSE(touched);

    LoggingEngine engine;
    g_logger.set(std::make_shared<BootstrapperLogger>(&engine));
    PDX_LOG(logError, "f", "%ls", WatchedText{touched});
    g_logger.clear();
    EXPECT_TRUE(touched) << "with a logger it is read";
}

}  // namespace
}  // namespace pdx
