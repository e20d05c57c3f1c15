// The UI thread, and the messages by which a run reaches its dialog.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <stdexcept>

#include "tests/core/ApplicationProbe.h"
#include "ui/dialog/AppMessages.h"
#include "ui/dialog/DialogUi.h"

namespace pdx {
namespace {

/// A window of no looks in the dialog's place; it counts the run's messages.
class CountingUi : public DialogUi {
  public:
    using DialogUi::DialogUi;
    std::atomic<int> messages = 0;

  protected:
    void runDialog() override {
        HWND made = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        SetWindowSubclass(made, count, 1, reinterpret_cast<DWORD_PTR>(&messages));
        gate().setWindow(made);
        gate().setReady(true);
        MSG message;
        while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
        DestroyWindow(made);
    }

  private:
    static LRESULT CALLBACK count(HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR, DWORD_PTR count) {
        if (message >= WM_APP && message <= 0xBFFF) ++*reinterpret_cast<std::atomic<int>*>(count);
        return DefSubclassProc(window, message, wparam, lparam);
    }
};

struct Sender {
    CountingUi& ui;
    HANDLE begun;
    std::atomic<bool> settled = false;
    static unsigned __stdcall run(void* argument) {
        auto& sender = *static_cast<Sender*>(argument);
        SetEvent(sender.begun);
        sender.ui.settle();
        sender.settled = true;
        sender.ui.cacheBegin();
        return 0;
    }
};

TEST(DialogUi, DelaysAMessageWhileAPromptIsOpen) {
    ProbedRun probed;
    CountingUi ui(probed.app());
    ASSERT_TRUE(ui.open());
    const Handle begun(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    ui.gate().setReady(false);
    Sender sender = {ui, begun.get()};
    Thread other;
    other.start(Sender::run, &sender);
    WaitForSingleObject(begun.get(), INFINITE);
    // No time limits how long a thread may be kept from running: a thousand later messages get through meanwhile.
    for (int time = 0; time < 1000; ++time) SendMessageW(ui.window(), WM_NULL, 0, 0);
    EXPECT_FALSE(sender.settled);
    ui.gate().setReady(true);
    other.join();
    EXPECT_EQ(ui.messages, 1);
}

TEST(DialogUi, SendsNothingAfterACancelNorWithoutAWindow) {
    ProbedRun probed;
    CountingUi ui(probed.app());
    EXPECT_EQ(ui.sendAppMessage(WM_BA_DETECT_COMPLETE), 0);
    ASSERT_TRUE(ui.open());
    probed.app().PromptCancel(nullptr, TRUE, nullptr, nullptr);
    EXPECT_EQ(ui.sendAppMessage(WM_BA_DETECT_COMPLETE), IDCANCEL);
    EXPECT_EQ(ui.messages, 0);
    probed.app().OnExecutePackageBegin(L"p", FALSE);
    EXPECT_EQ(ui.sendAppMessage(WM_BA_DETECT_COMPLETE), 0) << "in rollback";
    EXPECT_EQ(ui.messages, 1);
    ui.close();
    EXPECT_EQ(ui.sendAppMessage(WM_BA_DETECT_COMPLETE), 0);
}

TEST(DialogUi, EndsItsThreadInANestedLoop) {
    // As a dialog that is being moved.
    struct MovedUi : DialogUi {
        using DialogUi::DialogUi;
        void runDialog() override {
            MSG message;
            PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
            gate().setWindow(reinterpret_cast<HWND>(1));
            gate().setReady(true);
            for (int loop = 0; loop < 2; ++loop)
                while (GetMessageW(&message, nullptr, 0, 0) > 0) continue;
        }
    };
    ProbedRun probed;
    MovedUi ui(probed.app());
    EXPECT_TRUE(ui.open());
    ui.close();
}

TEST(DialogUi, FailsTheStartIfTheDialogThrows) {
    struct FailingUi : DialogUi {
        using DialogUi::DialogUi;
        void runDialog() override { throw std::runtime_error("no memory for a dialog"); }
    };
    ProbedRun probed;
    probed.makeUi = [](RunControls& run) { return std::make_unique<FailingUi>(run); };
    EXPECT_EQ(probed.callbacks().OnStartup(), E_FAIL);
    EXPECT_TRUE(probed.engine.findLog(L"The UI thread failed: no memory for a dialog"));
    EXPECT_EQ(probed.callbacks().OnShutdown(), 0);
}

/// Fails at a line that is logged while the dialog is made.
struct FailingLogger : Logger {
    void write(int32_t level, const char* function, int32_t line, const char* message) override {
        if (std::string_view(message).starts_with("variable=[InstallFolder]")) throw std::bad_alloc();
        earlier->write(level, function, line, message);
    }
    std::shared_ptr<Logger> earlier = g_logger.get();
};

TEST(DialogUi, FailsTheStartIfTheDialogIsIncomplete) {
    ProbedRun probed(BOOTSTRAPPER_ACTION_INSTALL, BOOTSTRAPPER_DISPLAY_FULL);
    probed.makeUi = [](RunControls& run) { return std::make_unique<DialogUi>(run); };
    probed.app();
    g_logger.set(std::make_shared<FailingLogger>());
    EXPECT_EQ(probed.callbacks().OnStartup(), E_FAIL);
    EXPECT_TRUE(probed.engine.findLog(L"The dialog is not complete"));
    EXPECT_EQ(probed.callbacks().OnShutdown(), 0);
    g_logger.clear();
}

}  // namespace
}  // namespace pdx
