// One page of the dialog, as plain values.
#pragma once

#include <cstdint>
#include <string>

#include "resources/ids.h"

namespace pdx {

enum PageKind : int32_t {
    pageBlank = 0,
    pageWelcome = 1,
    pageOptions = 2,
    pageBastion = 3,  ///< the offer to uninstall the older client
    pageProgress = 4,
    pagePrompt = 5,
};

/// How a page affects the closing of the window.
enum class PageRole {
    ordinary,
    closeQuestion,   ///< asks whether to cancel the run
    reportUnderWay,  ///< the run has ended, and its error report is being sent
};

// The parts of PageState::flags: button set, icon, and the buttons that are secondary.
inline constexpr uint32_t buttonSetMask = 0xF;
inline constexpr uint32_t iconMask = 0xF0;
inline constexpr uint32_t iconError = 0x10;
inline constexpr uint32_t iconInformation = 0x40;
inline constexpr uint32_t thirdSecondary = 0x20000000;
inline constexpr uint32_t secondSecondary = 0x40000000;
inline constexpr uint32_t firstSecondary = 0x80000000;

// The button sets, by a message box's numbers.
inline constexpr uint32_t buttonsOk = 0;
inline constexpr uint32_t buttonsOkCancel = 1;
inline constexpr uint32_t buttonsYesNo = 4;
inline constexpr uint32_t buttonsRetryCancel = 5;

/// Progress without a percentage yet.
inline constexpr int32_t indeterminate = -1;

struct PageState {
    PageKind kind = pageBlank;
    std::wstring title = {};
    std::wstring body = {};
    std::wstring checkLabel = {};
    uint32_t flags = 0;
    std::wstring button1Text = {};
    std::wstring button2Text = {};
    std::wstring button3Text = {};
    int32_t progress = indeterminate;
    int32_t result = 0;  ///< the control that the user pressed, 0 until then
    PageRole role = PageRole::ordinary;
};

/// The controls whose visibility depends on the page, in the order in which their positions are queued.
inline constexpr int32_t pageControls[] = {
    IDC_TITLE,   IDC_SUBTITLE, IDC_BODY,    IDC_LOCATION_LABEL, IDC_LOCATION_VALUE,
    IDC_PICTURE, IDC_PROGRESS, IDC_ACTION1, IDC_ACTION2,        IDC_ACTION3,
    IDC_CLOSE,   IDC_OPTIONS,  IDC_BROWSE,  IDC_SHORTCUT,       IDC_QUESTION,
};

/// Whether every page of that kind shows the control.
bool isShownOnPage(PageKind kind, int32_t control);

/// The answer of a control in a button set; 0 for a control that is not in the set.
int32_t ButtonResult(uint32_t flags, int32_t controlId);

/// Whether the page is a prompt with only one answer.
bool hasOneButton(const PageState& page);

/// The key of a button's default text; empty for an unknown result, which hides the button.
const wchar_t* defaultButtonKey(int32_t result);

}  // namespace pdx
