// The installer's dialog under test: on the test's own thread, so that the dialog's own message loops run what the user
// does.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/Text.h"
#include "tests/core/ApplicationProbe.h"
#include "tests/ui/toolkit/TestWindows.h"
#include "ui/dialog/AppMessages.h"
#include "ui/dialog/BootstrapperDialog.h"
#include "ui/dialog/DialogUi.h"
#include "ui/toolkit/rules/GumboTree.h"
#include "ui/toolkit/rules/Markup.h"

namespace pdx::testing_support {

/// The string of a key as a person reads it.
inline std::wstring readable(const wchar_t* key) {
    return plainText(GumboTree(toUtf8(BootstrapperDialog::Translate(key))));
}

/// The dialog with its bar in reach, and with a page that cannot be shown when the test wants it.
struct OpenDialog : BootstrapperDialog {
    using BootstrapperDialog::BootstrapperDialog;
    using BootstrapperDialog::progressBar;
    Size GetClientSize() const override {
        if (std::exchange(failsOnce, false)) throw std::bad_alloc();
        return BootstrapperDialog::GetClientSize();
    }
    mutable bool failsOnce = false;
};

constexpr int32_t escape = IDCANCEL;  ///< also the system's own close command

/// What the user does at a prompt.
struct Turn {
    const wchar_t* sees;                   ///< the title that shows by then
    int32_t presses = 0;                   ///< a control or `escape`
    std::function<void()> meanwhile = {};  ///< what happens before the press
};

class ProbedDialog : public ProbedRun {
  public:
    explicit ProbedDialog(BOOTSTRAPPER_ACTION action = BOOTSTRAPPER_ACTION_INSTALL,
                          BOOTSTRAPPER_DISPLAY display = BOOTSTRAPPER_DISPLAY_FULL)
        : ProbedRun(action, display) {
        engine.variables.set(L"InstallFolder", std::wstring(L"C:\\Games\\Palisade Desktop"));
        reportedBefore = reported().size();
        dialog = std::make_unique<OpenDialog>(app(), gate());
        dialog->Create({});
        settle();
        callsSeen = engine.calls().size();
    }
    ~ProbedDialog() {
        dialog.reset();
        dialogUi.reset();
        settle();
        EXPECT_TRUE(turns.empty()) << "a prompt did not show";
        DestroyWindow(caller);
    }

    /// It sends to the dialog as it does from the engine's thread.
    DialogUi& sender() {
        if (!dialogUi) dialogUi = std::make_unique<DialogUi>(app());
        return *dialogUi;
    }
    DialogGate& gate() { return sender().gate(); }
    [[nodiscard]] HWND window() const { return dialog->getHandle(); }
    [[nodiscard]] HWND item(int32_t id) const { return GetDlgItem(window(), id); }
    int send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
        return sender().sendAppMessage(message, wparam, lparam);
    }

    /// A message from a thread that had passed the gate before a prompt opened.
    int sendPastTheGate(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
        return static_cast<int>(SendMessageW(window(), message, wparam, lparam));
    }
    /// What the user does, in this order. Whichever loop takes the thread's next message runs the next turn, after all
    /// messages that wait.
    void user(std::vector<Turn> script) {
        const bool idle = turns.empty();
        for (Turn& turn : script) turns.push_back(std::move(turn));
        if (idle) callTurn();
    }
    /// A click as a person can make it: on what is there.
    void press(int32_t id) {
        if (id == escape) {
            SendMessageW(window(), WM_COMMAND, escape, 0);
            return;
        }
        EXPECT_TRUE(shows(id) && IsWindowEnabled(item(id))) << id;
        SendMessageW(window(), WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(item(id)));
    }
    /// Takes all messages that wait; keeps the code of a WM_QUIT.
    void settle() {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) quitCode = static_cast<int>(message.wParam);
            DispatchMessageW(&message);
        }
    }

    [[nodiscard]] bool shows(int32_t id) const { return (GetWindowLongW(item(id), GWL_STYLE) & WS_VISIBLE) != 0; }
    [[nodiscard]] PageKind page() const {
        for (const PageKind kind : {pageBlank, pageWelcome, pageOptions, pageBastion, pageProgress}) {
            bool same = true;
            for (const int32_t control : pageControls) same = same && shows(control) == isShownOnPage(kind, control);
            if (same) return kind;
        }
        return pagePrompt;
    }
    /// What the label shows, as a person reads it.
    [[nodiscard]] std::wstring text(int32_t id = IDC_TITLE) const {
        std::wstring found;
        for (const auto& [named, name] : names.names())
            if (named == item(id)) found = name;
        return found;
    }
    [[nodiscard]] int progress() const { return static_cast<int>(SendMessageW(item(IDC_PROGRESS), PBM_GETPOS, 0, 0)); }
    /// What the engine was asked for since the last time, "Apply" without its window.
    std::vector<std::string> newCalls() {
        std::vector<std::string> texts;
        for (const EngineCall& call : engine.calls())
            texts.push_back(call.operation == "Apply" ? call.operation : call.text());
        texts.erase(texts.begin(), texts.begin() + static_cast<ptrdiff_t>(callsSeen));
        callsSeen += texts.size();
        return texts;
    }

    /// What was reported since the last time: "enable", "meridian_start_close click" and so on.
    std::vector<std::string> newlyReported() {
        const std::string message = "tally message ";
        std::vector<std::string> texts = reported();
        const size_t before = std::exchange(reportedBefore, texts.size());
        texts.erase(texts.begin(), texts.begin() + static_cast<ptrdiff_t>(before));
        for (std::string& text : texts) {
            if (!text.starts_with(message)) continue;
            const auto attributes = nlohmann::json::parse(text.substr(message.size()));
            text = attributes["msg_id"].get<std::string>() + " " + attributes["status"].get<std::string>();
        }
        return texts;
    }

    NameListener names;
    std::unique_ptr<DialogUi> dialogUi;
    std::unique_ptr<OpenDialog> dialog;
    std::optional<int> quitCode;

  private:
    enum : WPARAM { first, afterTheOthers };

    static LRESULT CALLBACK takeTurn(HWND window, UINT message, WPARAM round, LPARAM lparam) {
        if (message != WM_USER) return DefWindowProcW(window, message, round, lparam);
        // Once more to the end of the queue: the end of a prompt posts the refresh of the page below it.
        if (round == first) return PostMessageW(window, WM_USER, afterTheOthers, lparam), 0;
        auto& probed = *reinterpret_cast<ProbedDialog*>(lparam);
        const Turn turn = std::move(probed.turns.front());
        probed.turns.pop_front();
        if (!probed.turns.empty()) probed.callTurn();
        EXPECT_EQ(probed.text(), readable(turn.sees));
        if (turn.meanwhile) turn.meanwhile();
        if (turn.presses) probed.press(turn.presses);
        return 0;
    }
    void callTurn() { PostMessageW(caller, WM_USER, first, reinterpret_cast<LPARAM>(this)); }
    static HWND makeCaller() {
        HWND made = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        SetWindowLongPtrW(made, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(takeTurn));
        return made;
    }

    HWND caller = makeCaller();
    std::deque<Turn> turns;
    size_t callsSeen = 0;
    size_t reportedBefore = 0;
};

}  // namespace pdx::testing_support
