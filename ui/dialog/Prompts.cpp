// Questions to the user. Each runs a nested message loop, so that the sender's callback waits for the answer.
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
template <typename Call>
AtEnd(Call) -> AtEnd<Call>;

}  // namespace

int32_t BootstrapperDialog::ShowPrompt(const Prompt& prompt) {
    if (!isPromptShown(run.display())) return prompt.defaultResult;
    // The window may be hidden for a newer installer that then failed.
    if (!IsVisible()) Show(SW_SHOW);
    const auto text = [](const wchar_t* key) { return *key ? Translate(key) : std::wstring(); };
    pages.push_back({.kind = prompt.kind,
                     .title = text(prompt.title),
                     .body = text(prompt.body),
                     .checkLabel = text(prompt.checkLabel),
                     .flags = prompt.flags,
                     .button1Text = text(prompt.button1),
                     .button2Text = text(prompt.button2),
                     .role = prompt.role});
    ++openPrompts;
    gate.setReady(false);
    // After an exception too: a prompt that counts as open blocks the engine's thread.
    const AtEnd end{[this] { removePrompt(); }};
    ShowTopPage();
    runPrompt();
    return ButtonResult(prompt.flags, topPage().result);  // before `end` removes the page
}

void BootstrapperDialog::removePrompt() noexcept {
    --openPrompts;
    // Not while a prompt below this one is open.
    if (openPrompts == 0) gate.setReady(true);
    if (pages.size() > 1)
        pages.pop_back();
    else
        topPage() = {};
    // Posted, not called: the message loop shows the page below.
    PostMessageW(hwnd, WM_BA_REFRESH_PAGE, 0, 0);
}

void BootstrapperDialog::runPrompt() {
    // A message of another thread may open a prompt above this one, so each loop watches its own page.
    const size_t depth = openPrompts;
    const auto own = [this, depth]() -> const PageState& { return pages[pages.size() - openPrompts + depth - 1]; };
    MSG message;
    while (own().result == 0 && IsWindow(hwnd)) {
        const BOOL more = GetMessageW(&message, nullptr, 0, 0);
        if (more == 0) {
            // Again for the outer loop.
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
