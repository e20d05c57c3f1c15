// The filter of unhandled exceptions: what it sends, whom it calls, who waits. The scenarios show that the system calls
// it.
#include "reporting/ExceptionHandler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "config/Translator.h"
#include "platform/Thread.h"
#include "reporting/rules/CrashSignature.h"
#include "tests/core/ApplicationProbe.h"
#include "tests/platform/Crash.h"
#include "tests/platform/Probe.h"

namespace pdx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr DWORD accessFault = EXCEPTION_ACCESS_VIOLATION;

/// The process with a filter of its own, before any handler, and with what the flow takes of it.
class ExceptionHandlerTest : public testing::Test {
  protected:
    ExceptionHandlerTest() : outer(SetUnhandledExceptionFilter(earlierFilter)) {
        steps.clear();
        result = EXCEPTION_CONTINUE_SEARCH;
        g_telemetry.set(telemetry);
        g_translator.set(std::make_shared<Translator>());
    }
    ~ExceptionHandlerTest() override {
        g_translator.clear();
        g_telemetry.clear();
        SetUnhandledExceptionFilter(outer);
    }

    /// A box that notes that it shows, and does something until it closes.
    static CrashBox box(std::function<void()> meanwhile = [] {}) {
        return [meanwhile = std::move(meanwhile)](const std::wstring&, const std::wstring&) {
            steps.emplace_back("box");
            meanwhile();
            steps.emplace_back("box closes");
        };
    }
    static LONG raise(ExceptionHandler& handler, DWORD code) {
        EXCEPTION_RECORD fault{};
        fault.ExceptionCode = code;
        CONTEXT registers{};
        EXCEPTION_POINTERS both{&fault, &registers};
        return handler.filter(&both);
    }
    static unsigned __stdcall overflow(void* handler) {
        return raise(*static_cast<ExceptionHandler*>(handler), EXCEPTION_STACK_OVERFLOW), 0;
    }
    static LONG CALLBACK earlierFilter(EXCEPTION_POINTERS* pointers) {
        steps.push_back(fmt::format("{:08x}", pointers->ExceptionRecord->ExceptionCode));
        return result;
    }
    /// The filter that the process has now.
    static LPTOP_LEVEL_EXCEPTION_FILTER current() {
        const auto filter = SetUnhandledExceptionFilter(nullptr);
        SetUnhandledExceptionFilter(filter);
        return filter;
    }

    /// Boxes, and calls of the earlier filter by their code, in order.
    inline static std::vector<std::string> steps;
    inline static LONG result = 0;
    std::shared_ptr<RecordingTelemetry> telemetry = std::make_shared<RecordingTelemetry>();
    EXCEPTION_RECORD record{};
    CONTEXT context{};
    EXCEPTION_POINTERS pointers{&record, &context};
    LPTOP_LEVEL_EXCEPTION_FILTER outer;
};

TEST_F(ExceptionHandlerTest, ReportsTheFirstFatalExceptionAndPassesEachToTheEarlierFilter) {
    ExceptionHandler handler(box());
    result = EXCEPTION_CONTINUE_EXECUTION;
    EXPECT_EQ(raise(handler, EXCEPTION_BREAKPOINT), EXCEPTION_CONTINUE_EXECUTION);
    EXPECT_THAT(telemetry->notes(), IsEmpty());
    result = EXCEPTION_EXECUTE_HANDLER;
    EXPECT_EQ(raise(handler, accessFault), EXCEPTION_EXECUTE_HANDLER);
    EXPECT_EQ(raise(handler, EXCEPTION_ILLEGAL_INSTRUCTION), EXCEPTION_EXECUTE_HANDLER);
    EXPECT_THAT(steps, ElementsAre("80000003", "box", "box closes", "c0000005", "c000001d"));
    EXPECT_THAT(telemetry->notes(), ElementsAre(StartsWith("urgent brisk erro.crit.cras ")));
}

TEST_F(ExceptionHandlerTest, WorksWithoutStringsTelemetryAndEarlierFilter) {
    g_translator.clear();
    ExceptionHandler withoutWords(box());
    raise(withoutWords, accessFault);
    EXPECT_THAT(steps, ElementsAre("c0000005"));
    EXPECT_EQ(telemetry->notes().size(), 1u);

    steps.clear();
    g_translator.set(std::make_shared<Translator>());
    g_telemetry.clear();
    SetUnhandledExceptionFilter(nullptr);
    ExceptionHandler handler(box());
    EXPECT_EQ(raise(handler, accessFault), EXCEPTION_CONTINUE_SEARCH);
    EXPECT_THAT(steps, ElementsAre("box", "box closes"));
}

/// In the place of the system's own way to the filter, on which Wine ends a process that faults within the filter.
LPTOP_LEVEL_EXCEPTION_FILTER wayToFilter = nullptr;
LONG CALLBACK goToFilter(EXCEPTION_POINTERS* pointers) { return wayToFilter(pointers), EXCEPTION_CONTINUE_EXECUTION; }

TEST_F(ExceptionHandlerTest, PassesAFaultOfTheCrashFlowToTheEarlierFilter) {
    const auto fault = [](DWORD code) { RaiseException(code, 0, 0, nullptr); };
    g_exceptionHandler.set(std::make_shared<ExceptionHandler>(box([&] { fault(EXCEPTION_ILLEGAL_INSTRUCTION); })));
    wayToFilter = current();
    void* const way = AddVectoredExceptionHandler(1, goToFilter);
    fault(accessFault);
    RemoveVectoredExceptionHandler(way);
    g_exceptionHandler.clear();
    EXPECT_THAT(steps, ElementsAre("box", "c000001d", "box closes", "c0000005"));
}

TEST_F(ExceptionHandlerTest, BlocksOtherThreadsUntilTheBoxHasClosed) {
    Thread other;
    bool ended = true;
    ExceptionHandler* itself = nullptr;
    ExceptionHandler handler(box([&] {
        other.start(overflow, itself);
        ended = other.endsWithin(300);
    }));
    itself = &handler;
    raise(handler, accessFault);
    other.join();
    EXPECT_FALSE(ended) << "while the box shows";
    EXPECT_THAT(steps, ElementsAre("box", "box closes", "c0000005", "c00000fd"));
    EXPECT_EQ(telemetry->notes().size(), 1u);
}

TEST_F(ExceptionHandlerTest, IsTheFilterDuringItsLifeAndNeverCallsItself) {
    LPTOP_LEVEL_EXCEPTION_FILTER filter = nullptr;
    record.ExceptionCode = EXCEPTION_BREAKPOINT;
    result = EXCEPTION_EXECUTE_HANDLER;
    auto left = std::make_shared<ExceptionHandler>();  // by an object before a reload
    g_exceptionHandler.set(left);
    left.reset();
    {
        const ExceptionHandlerLife life;
        filter = current();
        EXPECT_NE(filter, earlierFilter);
        EXPECT_EQ(filter(&pointers), EXCEPTION_EXECUTE_HANDLER);
        EXPECT_THAT(steps, ElementsAre("80000003"));
    }
    EXPECT_EQ(current(), earlierFilter);
    EXPECT_EQ(filter(&pointers), EXCEPTION_CONTINUE_SEARCH) << "called by a thread that was on its way";

    const auto held = std::make_shared<ExceptionHandler>();  // by a thread that is in it
    const ExceptionHandlerLife life;
    EXPECT_EQ(filter(&pointers), EXCEPTION_CONTINUE_SEARCH);
}

TEST_F(ExceptionHandlerTest, LoadsTheStackWalkLibraryBeforeACrash) {
    // Earlier tests have it, each use with a reference of its own.
    while (const HMODULE loaded = GetModuleHandleW(L"dbghelp.dll")) FreeLibrary(loaded);
    { const ExceptionHandlerLife life; }
    EXPECT_NE(GetModuleHandleW(L"dbghelp.dll"), nullptr);
}

/// The icon of the first box that its thread shows and that it closes.
HICON iconOfBox = nullptr;

LRESULT CALLBACK lookAtBox(int code, WPARAM window, LPARAM facts) {
    const auto box = reinterpret_cast<HWND>(window);
    if (code == HCBT_ACTIVATE) {
        for (HWND child = nullptr; !iconOfBox && (child = FindWindowExW(box, child, L"Static", nullptr));)
            iconOfBox = reinterpret_cast<HICON>(SendMessageW(child, STM_GETICON, 0, 0));
        EndDialog(box, IDOK);
    }
    return CallNextHookEx(nullptr, code, window, facts);
}

TEST_F(ExceptionHandlerTest, ShowsTheErrorIcon) {
    const HHOOK hook = SetWindowsHookExW(WH_CBT, lookAtBox, nullptr, GetCurrentThreadId());
    ExceptionHandler::showCrashBox(L"text", L"caption");
    UnhookWindowsHookEx(hook);
    EXPECT_NE(iconOfBox, nullptr);
    EXPECT_EQ(iconOfBox, LoadIconW(nullptr, IDI_ERROR));
}

struct Signed {
    std::string found, wanted;
    std::vector<std::string> names;
};

std::string moduleOf(const void* address) {
    HMODULE module = nullptr;
    wchar_t path[MAX_PATH];
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<LPCWSTR>(address), &module);
    return std::filesystem::path(std::wstring(path, GetModuleFileNameW(module, path, MAX_PATH))).filename().string();
}

/// Signs the stack of its thread as if it faulted in this function, and takes the modules from the system's own walk.
unsigned __stdcall signOwnStack(void* target) {
    auto& [found, wanted, names] = *static_cast<Signed*>(target);
    CONTEXT registers{};
    registers.Eip = reinterpret_cast<uintptr_t>(signOwnStack);
    registers.Ebp = registers.Esp = reinterpret_cast<uintptr_t>(__builtin_frame_address(0));
    EXCEPTION_RECORD record{};
    record.ExceptionAddress = reinterpret_cast<void*>(0x1234ABCD);
    EXCEPTION_POINTERS pointers{&record, &registers};
    found = signatureOf(pointers);

    void* frames[62] = {reinterpret_cast<void*>(signOwnStack)};
    const USHORT count = CaptureStackBackTrace(0, ARRAYSIZE(frames) - 1, frames + 1, nullptr);
    StackHash hash;
    for (USHORT i = 0; i <= count && frames[i]; ++i) {
        names.push_back(moduleOf(frames[i]));
        hash.add(names.back());
    }
    wanted = crashSignature(hash, 0xABCD);
    return 0;
}

TEST_F(ExceptionHandlerTest, SignsAStackByTheModulesOfItsFrames) {
    Signed stack;
    Thread thread;
    thread.start(signOwnStack, &stack);
    thread.join();
    EXPECT_EQ(stack.found, stack.wanted) << testing::PrintToString(stack.names);
    EXPECT_EQ(stack.names.front(), "windows_tests.exe");
    EXPECT_EQ(stack.names.back(), "ntdll.dll") << "where threads begin";
}

TEST_F(ExceptionHandlerTest, HashesAModulesNameInTheSystemsCodePage) {
    const TestFolder folder;
    const std::wstring library = copyProbe(folder, L"gr\u00f6\u00dfe.dll");
    const auto module = reinterpret_cast<uintptr_t>(LoadLibraryW(library.c_str()));
    ASSERT_NE(module, 0u);
    const uintptr_t lastFrame[2] = {};
    context.Eip = module + 0x1000;
    context.Ebp = context.Esp = reinterpret_cast<uintptr_t>(lastFrame);
    StackHash hash;
    ASSERT_EQ(GetACP(), 1252u);
    hash.add("gr\xF6\xDF\x65.dll");
    EXPECT_EQ(signatureOf(pointers), crashSignature(hash, 0));
    FreeLibrary(reinterpret_cast<HMODULE>(module));
}

TEST_F(ExceptionHandlerTest, EndsTheWalkOfADamagedStack) {
    uintptr_t frames[6] = {};
    context.Eip = reinterpret_cast<uintptr_t>(moduleOf);
    const auto address = [&](size_t frame) { return reinterpret_cast<uintptr_t>(&frames[frame]); };
    const auto sign = [&](uintptr_t frame) {
        context.Ebp = context.Esp = static_cast<DWORD>(frame);
        return signatureOf(pointers);
    };
    for (const size_t frame : {0u, 2u, 4u}) frames[frame + 1] = context.Eip;
    frames[0] = address(2);  // which leads to itself, or back
    for (const size_t next : {2u, 0u}) {
        frames[2] = address(next);
        EXPECT_FALSE(sign(address(0)).empty());
    }
    for (const uintptr_t nowhere : {0u, 1u, 0xFFFFFFF0u}) EXPECT_FALSE(sign(nowhere).empty());
    context.Eip = 0;
    EXPECT_EQ(sign(0), "25-0000") << "not one module";
}

}  // namespace
}  // namespace pdx
