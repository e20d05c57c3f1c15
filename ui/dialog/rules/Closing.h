// What the close button does, and what Escape and the system's close command do.
#pragma once

#include "ui/dialog/rules/PageState.h"

namespace pdx {

struct ClosingFacts {
    PageRole page = PageRole::ordinary;  ///< of the page on top
    bool oneButton = false;              ///< the page on top is a prompt with one button
    bool closePromptOpen = false;        ///< on top or below another prompt
    bool uninstalls = false;
    bool asksUser = true;  ///< the display shows prompts
};

enum class CloseAction {
    nothing,
    firstButton,  ///< presses the first button of the page on top
    ask,          ///< asks whether to cancel the run, and cancels it if so
    stop,         ///< cancels the run without a question
    hide,         ///< hides the window; the work continues
};

struct CloseActions {
    CloseAction cross;
    CloseAction escape;
};

/// Escape acts as the close button only where that asks first or ends nothing: no stray key may end a run.
constexpr CloseActions closeActions(const ClosingFacts& facts) {
    using enum CloseAction;
    using Facts = ClosingFacts;
    constexpr struct {
        bool (*holds)(const Facts&);
        CloseActions actions;
    } rows[] = {
        {[](const Facts& f) { return f.page == PageRole::reportUnderWay; }, {hide, hide}},
        {[](const Facts& f) { return f.page == PageRole::closeQuestion; }, {stop, firstButton}},
        {[](const Facts& f) { return f.oneButton && (f.closePromptOpen || f.uninstalls); }, {stop, firstButton}},
        {[](const Facts& f) { return f.closePromptOpen || f.uninstalls; }, {stop, nothing}},
        {[](const Facts& f) { return f.oneButton; }, {ask, firstButton}},
        {[](const Facts& f) { return !f.asksUser; }, {stop, nothing}},
    };
    for (const auto& row : rows)
        if (row.holds(facts)) return row.actions;
    return {ask, ask};
}

}  // namespace pdx
