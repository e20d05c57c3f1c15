// Questions to the user, each with a message loop of its own, so that the sender's callback waits for the answer.
#include "ui/dialog/AppMessages.h"
#include "ui/dialog/BootstrapperDialog.h"
#include "ui/dialog/rules/PageFlow.h"

namespace pdx {
namespace {

/// Calls a function at the end of its scope, after an exception too.
template <typename Call>
struct AtEnd {
    Call call;
    ~AtEnd() { call(); }
};

}  // namespace

int32_t BootstrapperDialog::ShowPrompt(const Prompt& prompt) {
    if (!isPromptShown(run.display())) return prompt.defaultResult;
    // Hidden for a newer installer that then failed: nobody could answer.
    if (!IsVisible()) Show(SW_SHOW);
    const auto text = [](const wchar_t* key) { return *key ? Translate(key) : std::wstring(); };
    pages.push_back({.kind = prompt.kind,
                     .title = text(prompt.title),
                     .body = text(prompt.body),
                     .checkLabel = text(prompt.checkLabel),
                     .flags = prompt.flags,
                     .button1Text = text(prompt.button1),
                     .button2Text = text(prompt.button2),
                     .button3Text = text(prompt.button3),
                     .role = prompt.role});
    ++openPrompts;
    gate.setReady(false);
    // Without fail: a prompt that counted as open for ever would hold the engine's thread for ever.
    const AtEnd end([this] { RemovePrompt(); });
    ShowTopPage();
    RunPrompt();
    return ButtonResult(prompt.flags, Top().result);
}

void BootstrapperDialog::RemovePrompt() noexcept {
    --openPrompts;
    // A prompt below this one still waits for its answer.
    if (openPrompts == 0) gate.setReady(true);
    if (pages.size() > 1)
        pages.pop_back();
    else
        Top() = {};
    // Posted, not called: the page below comes back when the loop runs again.
    PostMessageW(hwnd, WM_BA_REFRESH_PAGE, 0, 0);
}

void BootstrapperDialog::RunPrompt() {
    // A message of another thread may open a prompt over this one meanwhile: each loop watches its own page.
    const size_t depth = openPrompts;
    const auto own = [this, depth]() -> const PageState& { return pages[pages.size() - openPrompts + depth - 1]; };
    MSG message;
    while (own().result == 0 && IsWindow(hwnd)) {
        const BOOL more = GetMessageW(&message, nullptr, 0, 0);
        if (more == 0) {
            // The outer loop has to see the end too.
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        if (more < 0) return;
        if (!IsDialogMessageW(hwnd, &message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

}  // namespace pdx
