// The stack of pages, and the layout of a page from its PageState, with the fonts of its labels.
#include <windows.h>

#include <commctrl.h>

#include "config/rules/SupportAddress.h"
#include "config/Settings.h"
#include "config/Translator.h"
#include "ui/dialog/PageView.h"

namespace pdx {
namespace {

constexpr UINT placed = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER;
constexpr UINT shown = placed | SWP_SHOWWINDOW;
constexpr UINT hidden = placed | SWP_HIDEWINDOW;
// The tests of PendingPositions are written with these numbers.
static_assert(placed == 0x214 && shown == 0x254 && hidden == 0x294);

constexpr LineHeight tallestBody = {LineHeight::pixels, 95};
constexpr LineHeight noLimit = {};
constexpr LPARAM marqueePeriodMs = 20;

/// The top of the part below the box.
int32_t below(const Box& box, int32_t gap) { return box.y + box.height + gap; }

std::optional<Size> sizeOf(const Button& button) {
    if (button.GetText().empty()) return std::nullopt;
    return button.GetPreferredSize();
}

}  // namespace

PageView::PageView() : Dialog(IDD_BOOTSTRAPPER) {}

std::wstring PageView::Translate(const wchar_t* key) {
    const auto translator = g_translator.get();
    return translator ? fillSupportAddress(translator->translate(key), getConfigWideString("support.url")) : key;
}

void PageView::createControls() {
    const auto make = [this]<typename Widget>(std::unique_ptr<Widget>& widget, int32_t id) -> Widget& {
        widget = std::make_unique<Widget>(GetItem(id));
        return *widget;
    };
    make(titleLabel, IDC_TITLE).SetFont(textFont(20, fontBold));
    titleLabel->SetDefaultLineHeight({LineHeight::pixels, 31});
    make(subtitleLabel, IDC_SUBTITLE);
    make(bodyLabel, IDC_BODY).SetFont(textFont(16, fontRegular));
    bodyLabel->SetDefaultLineHeight({LineHeight::pixels, 26});
    make(locationLabel, IDC_LOCATION_LABEL).SetFont(textFont(14, fontBold));
    make(locationValue, IDC_LOCATION_VALUE).SetFont(CreateFontByName(pathFace, 14, fontRegular));
    locationValue->setTextColor(palette::Grey[8]);
    make(closeButton, IDC_CLOSE).SetAccessibleName(Translate(L"installer_close"));
    make(actionButton, IDC_ACTION1).SetFont(textFont(14, fontBold));
    make(actionButton2, IDC_ACTION2).SetFont(textFont(14, fontBold));
    make(actionButton3, IDC_ACTION3).SetFont(textFont(14, fontBold));
    make(optionsLink, IDC_OPTIONS).SetFont(textFont(16, fontRegular));
    make(browseLink, IDC_BROWSE).SetFont(textFont(14, fontBold));
    make(shortcutCheck, IDC_SHORTCUT).SetFont(textFont(16, fontRegular));
    shortcutCheck->SetChecked(true);
    make(questionCheck, IDC_QUESTION).SetFont(textFont(16, fontRegular));
    questionCheck->SetChecked(true);
    make(progressBar, IDC_PROGRESS);
}

void PageView::ReplacePage(PageState page) {
    if (openPrompts == 0) {
        pages.clear();
        PushPage(std::move(page));
        return;
    }
    // The prompts stay visible; the page is shown when they are answered.
    pages.erase(pages.begin(), pages.end() - static_cast<ptrdiff_t>(openPrompts));
    pages.push_front(std::move(page));
}

void PageView::PushPage(PageState page) {
    pages.push_back(std::move(page));
    ShowTopPage();
}

PageState& PageView::pageBelowPrompts() {
    return openPrompts < pages.size() ? pages[pages.size() - 1 - openPrompts] : topPage();
}

void PageView::retitle(const wchar_t* key) {
    PageState& page = pageBelowPrompts();
    page.title = Translate(key);
    if (openPrompts == 0) titleLabel->SetText(page.title);
}

void PageView::showProgress(int32_t percent) {
    // A message may have been sent before a prompt opened: it never concerns the prompt.
    PageState& page = pageBelowPrompts();
    if (page.progress == percent) return;
    SendMessageW(progressBar->getHandle(), PBM_SETPOS, static_cast<WPARAM>(percent), 0);
    page.progress = percent;
}

PageView::PageBoxes PageView::initialBoxes() const {
    const Box image = boxOf(GetInitialRect(IDC_PICTURE));
    return {.top = below(image, gapUnderPicture),
            .title = boxOf(GetInitialRect(IDC_TITLE)),
            .subtitle = boxOf(GetInitialRect(IDC_SUBTITLE)),
            .body = boxOf(GetInitialRect(IDC_BODY)),
            .check = boxOf(GetInitialRect(IDC_QUESTION)),
            .buttons = {boxOf(GetInitialRect(IDC_ACTION1)), boxOf(GetChildRectById(IDC_ACTION2)),
                        boxOf(GetChildRectById(IDC_ACTION3))}};
}

void PageView::ShowTopPage() {
    const PageState page = topPage();
    PageBoxes boxes = initialBoxes();
    ClearPositions();
    queueVisibility(page.kind);
    plainBackground = page.kind == pageOptions;
    for (Button* button : {actionButton.get(), actionButton2.get(), actionButton3.get()}) button->SetText({});
    uint32_t secondary = 0;
    switch (page.kind) {
        case pageWelcome:
            fillWelcome(boxes);
            break;
        case pageOptions:
            fillOptions();
            break;
        case pageBastion:
            fillBastion(boxes);
            secondary = secondSecondary;
            break;
        case pageProgress:
            fillProgress(page, boxes);
            break;
        case pagePrompt:
            fillPrompt(page, boxes);
            secondary = page.flags;
            break;
        default:
            break;
    }
    placeButtons(boxes);
    actionButton->setSecondary((secondary & firstSecondary) != 0);
    actionButton2->setSecondary((secondary & secondSecondary) != 0);
    actionButton3->setSecondary((secondary & thirdSecondary) != 0);
    QueuePosition(IDC_TITLE, boxes.title, placed);
    QueuePosition(IDC_SUBTITLE, boxes.subtitle, placed);
    QueuePosition(IDC_BODY, boxes.body, placed);
    QueuePosition(IDC_QUESTION, boxes.check, placed);
    QueuePosition(IDC_ACTION1, boxes.buttons.first, placed);
    ApplyPositions();
    // The children too: they may show background and picture of the page before.
    RedrawWindow(hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
    ::SetFocus(hwnd);
}

void PageView::queueVisibility(PageKind kind) {
    for (const int32_t control : pageControls)
        QueuePosition(control, nullptr, isShownOnPage(kind, control) ? shown : hidden);
}

void PageView::setLabel(HtmlStatic& label, std::unique_ptr<Font> labelFont, const std::wstring& text, Box& box,
                        int32_t y) {
    // Measured in the highest window: a text higher than its window gets a scroll track. It is laid out narrower then,
    // and might need one line more.
    SetWindowPos(label.getHandle(), nullptr, 0, 0, box.width, GetClientSize().height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW);
    label.SetFont(std::move(labelFont));
    label.SetText(text);
    box.y = y;
    box.height = label.GetPreferredSize().height;
}

void PageView::fillWelcome(PageBoxes& boxes) {
    setLabel(*titleLabel, textFont(20, fontBold), Translate(L"installer_welcome_body"), boxes.title, boxes.top);
    bodyLabel->SetMaxHeight(tallestBody);
    setLabel(*bodyLabel, textFont(16, fontRegular), Translate(L"INSTALLER_AGREEMENT_BODY"), boxes.body,
             below(boxes.title, gapToBody));
    optionsLink->SetText(Translate(L"INSTALLER_VIEW_OPTIONS"));
    actionButton->SetText(Translate(L"INSTALLER_LETS_GO"));
    Box link = boxOf(GetInitialRect(IDC_OPTIONS));
    link.y = below(boxes.body, gapToOptionsLink);
    QueuePosition(IDC_OPTIONS, link, placed);
}

void PageView::fillOptions() {
    locationLabel->SetText(Translate(L"INSTALLER_LOCATION"));
    shortcutCheck->SetText(Translate(L"INSTALLER_CREATE_SHORTCUT"));
    browseLink->SetText(Translate(L"INSTALLER_CHANGE"));
    actionButton->SetText(Translate(L"INSTALLER_LETS_GO"));
    actionButton2->SetText(Translate(L"go_back_cta"));
}

void PageView::fillBastion(PageBoxes& boxes) {
    setLabel(*titleLabel, textFont(27, fontBold), Translate(L"INSTALLER_DIALOG_UNINSTALL_BASTION_CONFIRMATION_TITLE"),
             boxes.title, boxes.top);
    const auto [subtitle, body] = cutAtLineFeed(Translate(L"INSTALLER_DIALOG_UNINSTALL_BASTION_CONFIRMATION_BODY"));
    setLabel(*subtitleLabel, textFont(16, fontRegular), subtitle, boxes.subtitle, below(boxes.title, gapBetweenLines));
    bodyLabel->SetMaxHeight(tallestBody);
    setLabel(*bodyLabel, textFont(16, fontRegular), body, boxes.body, below(boxes.title, gapToBody));
    actionButton->SetText(Translate(L"BUTTON_UNINSTALL-BASTION"));
    actionButton2->SetText(Translate(L"NOT-NOW"));
}

void PageView::fillProgress(const PageState& page, PageBoxes& boxes) {
    setLabel(*titleLabel, textFont(27, fontBold), page.title, boxes.title, boxes.top);
    const HWND bar = progressBar->getHandle();
    SendMessageW(bar, PBM_SETRANGE32, 0, 100);
    if (page.progress == indeterminate)
        SendMessageW(bar, PBM_SETMARQUEE, TRUE, marqueePeriodMs);
    else
        SendMessageW(bar, PBM_SETPOS, static_cast<WPARAM>(page.progress), 0);
}

void PageView::fillPrompt(const PageState& page, PageBoxes& boxes) {
    int32_t y = boxes.top;
    if (!page.title.empty()) {
        setLabel(*titleLabel, textFont(27, fontBold), page.title, boxes.title, y);
        QueuePosition(IDC_TITLE, nullptr, shown);
        y = below(boxes.title, gapBetweenLines);
    }
    if (!page.body.empty()) {
        bodyLabel->SetMaxHeight(noLimit);
        setLabel(*bodyLabel, textFont(18, fontRegular), page.body, boxes.body, y);
        QueuePosition(IDC_BODY, nullptr, shown);
        y = below(boxes.body, gapBetweenLines);
    }
    if (!page.checkLabel.empty()) {
        questionCheck->SetText(page.checkLabel);
        boxes.check.width = questionCheck->GetPreferredSize().width;
        boxes.check.x = (GetClientSize().width - boxes.check.width) / 2;
        boxes.check.y = y;
        QueuePosition(IDC_QUESTION, nullptr, shown);
    }
    setButtonTexts(page);
    if (page.flags & iconMask) QueuePosition(IDC_PICTURE, nullptr, shown);
}

void PageView::setButtonTexts(const PageState& page) {
    const auto text = [&page](const std::wstring& own, int32_t control) {
        if (!own.empty()) return own;
        const std::wstring key = defaultButtonKey(ButtonResult(page.flags, control));
        return key.empty() ? key : Translate(key.c_str());
    };
    const std::wstring first = text(page.button1Text, IDC_ACTION1);
    actionButton->SetText(first.empty() ? Translate(L"INSTALLER_OK") : first);
    actionButton2->SetText(text(page.button2Text, IDC_ACTION2));
    actionButton3->SetText(text(page.button3Text, IDC_ACTION3));
}

void PageView::placeButtons(PageBoxes& boxes) {
    const ButtonSizes sizes = {sizeOf(*actionButton), sizeOf(*actionButton2), sizeOf(*actionButton3)};
    boxes.buttons = layoutButtons(GetClientSize(), sizes, boxes.buttons);
    if (sizes.second) QueuePosition(IDC_ACTION2, boxes.buttons.second, shown);
    if (sizes.third) QueuePosition(IDC_ACTION3, boxes.buttons.third, shown);
}

}  // namespace pdx
