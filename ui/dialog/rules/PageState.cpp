#include "ui/dialog/rules/PageState.h"

#include <algorithm>
#include <iterator>
#include <span>

namespace pdx {
namespace {

struct PageRow {
    PageKind kind;
    std::span<const int32_t> controls;
};

constexpr int32_t blankControls[] = {IDC_PICTURE};
constexpr int32_t welcomeControls[] = {IDC_TITLE, IDC_BODY, IDC_PICTURE, IDC_ACTION1, IDC_OPTIONS, IDC_CLOSE};
constexpr int32_t optionsControls[] = {IDC_LOCATION_LABEL, IDC_LOCATION_VALUE, IDC_BROWSE, IDC_SHORTCUT,
                                       IDC_ACTION1,        IDC_ACTION2,        IDC_CLOSE};
constexpr int32_t bastionControls[] = {IDC_TITLE,   IDC_SUBTITLE, IDC_BODY, IDC_PICTURE,
                                       IDC_ACTION1, IDC_ACTION2,  IDC_CLOSE};
constexpr int32_t progressControls[] = {IDC_PICTURE, IDC_TITLE, IDC_PROGRESS, IDC_CLOSE};
/// The other controls of a prompt depend on its content.
constexpr int32_t promptControls[] = {IDC_ACTION1, IDC_CLOSE};

constexpr PageRow pageRows[] = {
    {pageBlank, blankControls},     {pageWelcome, welcomeControls},   {pageOptions, optionsControls},
    {pageBastion, bastionControls}, {pageProgress, progressControls}, {pagePrompt, promptControls},
};

/// By button set: the answers of the three buttons, 0 for none.
constexpr int32_t buttonResults[][3] = {
    {1, 0, 0},    // OK
    {1, 2, 0},    // OK, Cancel
    {3, 4, 5},    // Abort, Retry, Ignore
    {6, 7, 2},    // Yes, No, Cancel
    {6, 7, 0},    // Yes, No
    {4, 2, 0},    // Retry, Cancel
    {2, 10, 11},  // Cancel, Try again, Continue
};

constexpr struct {
    int32_t result;
    const wchar_t* key;
} buttonKeys[] = {
    {1, L"INSTALLER_OK"},    {2, L"INSTALLER_CANCEL"},     {3, L"INSTALLER_ABORT"},
    {4, L"INSTALLER_RETRY"}, {5, L"INSTALLER_IGNORE"},     {6, L"INSTALLER_YES"},
    {7, L"INSTALLER_NO"},    {10, L"INSTALLER_TRY_AGAIN"}, {11, L"INSTALLER_CONTINUE"},
};

}  // namespace

bool isShownOnPage(PageKind kind, int32_t control) {
    for (const PageRow& row : pageRows)
        if (row.kind == kind) return std::find(row.controls.begin(), row.controls.end(), control) != row.controls.end();
    return false;
}

int32_t ButtonResult(uint32_t flags, int32_t controlId) {
    const uint32_t set = flags & buttonSetMask;
    if (set >= std::size(buttonResults)) return 0;
    switch (controlId) {
        case IDC_ACTION1:
            return buttonResults[set][0];
        case IDC_ACTION2:
            return buttonResults[set][1];
        case IDC_ACTION3:
            return buttonResults[set][2];
        default:
            return 0;
    }
}

bool hasOneButton(const PageState& page) {
    return page.kind == pagePrompt && ButtonResult(page.flags, IDC_ACTION2) == 0;
}

const wchar_t* defaultButtonKey(int32_t result) {
    for (const auto& row : buttonKeys)
        if (row.result == result) return row.key;
    return L"";
}

}  // namespace pdx
