#include "ui/toolkit/Dialog.h"

#include <commctrl.h>

#include "config/Resources.h"
#include "platform/Paths.h"
#include "ui/toolkit/rules/DialogLayout.h"

namespace pdx {

static_assert(positionNoSize == SWP_NOSIZE && positionNoMove == SWP_NOMOVE && positionNoZOrder == SWP_NOZORDER &&
              positionShow == SWP_SHOWWINDOW && positionHide == SWP_HIDEWINDOW &&
              positionNoOwnerZOrder == SWP_NOOWNERZORDER);

namespace {

/// Whether a dialog procedure returns the handler's result itself. For all other messages it stores the result and
/// returns TRUE.
bool returnsResult(UINT message) {
    return message == WM_VKEYTOITEM || message == WM_CHARTOITEM || message == WM_QUERYDRAGICON ||
           message == WM_COMPAREITEM || message == WM_INITDIALOG ||
           (message >= WM_CTLCOLOREDIT && message <= WM_CTLCOLORSTATIC);
}

}  // namespace

Dialog::~Dialog() {
    // The window may still exist, and must not call this object.
    if (hwnd && reinterpret_cast<Dialog*>(GetWindowLongPtrW(hwnd, DWLP_USER)) == this)
        SetWindowLongPtrW(hwnd, DWLP_USER, 0);
}

HWND Dialog::Create(const CreateParams&) {
    if (hwnd) return hwnd;
    InitCommonControls();  // loads the delayed library that registers the classes of the template's controls
    hwnd = CreateDialogParamW(libraryModule(), MAKEINTRESOURCEW(templateId), nullptr, dialogProc,
                              reinterpret_cast<LPARAM>(this));
    return hwnd;
}

INT_PTR CALLBACK Dialog::dialogProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
    if (message == WM_INITDIALOG) {
        auto* created = reinterpret_cast<Dialog*>(lparam);
        created->hwnd = window;
        SetWindowLongPtrW(window, DWLP_USER, lparam);
    }
    auto* dialog = reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (!dialog) return FALSE;
    const MessageResult result = dialog->receiveMessage(message, wparam, lparam);
    if (!result.handled) return FALSE;
    if (returnsResult(message)) return result.result;
    SetWindowLongPtrW(window, DWLP_MSGRESULT, result.result);
    return TRUE;
}

MessageResult Dialog::HandleMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_INITDIALOG) readLayout();
    return Window::HandleMessage(message, wparam, lparam);
}

void Dialog::readLayout() {
    const std::vector<LayoutRecord> records =
        parseLayoutRecords(loadResource({L"AFX_DIALOG_LAYOUT", templateId}).asBytes());
    if (records.empty()) return;
    const Size client = GetClientSize();
    initialClientWidth = client.width;
    initialClientHeight = client.height;
    HWND child = ::GetWindow(hwnd, GW_CHILD);
    for (const LayoutRecord& record : records) {
        if (!child) break;
        layoutItems.push_back({.hwnd = child,
                               .rect = GetChildRect(child),
                               .sizeX = record.sizeX,
                               .sizeY = record.sizeY,
                               .moveX = record.moveX,
                               .moveY = record.moveY});
        child = ::GetWindow(child, GW_HWNDNEXT);
    }
}

Rect Dialog::GetInitialRect(int32_t id) const {
    const HWND child = GetItem(id);
    for (const LayoutItem& item : layoutItems)
        if (child && item.hwnd == child) return item.rect;
    return {};
}

void Dialog::QueuePosition(int32_t id, const Rect* rect, UINT flags, HWND insertAfter) {
    const Box box = rect ? boxOf(*rect) : Box{};
    pendingPositions.queue(id, rect ? &box : nullptr, flags, insertAfter);
}

void Dialog::QueuePosition(int32_t id, const Box& box, UINT flags, HWND insertAfter) {
    pendingPositions.queue(id, &box, flags, insertAfter);
}

void Dialog::ApplyPositions() {
    HDWP moves = BeginDeferWindowPos(static_cast<int>(pendingPositions.entries().size()));
    for (const PendingPosition& position : pendingPositions.entries()) {
        // The platform drops the moves of all children when one is missing.
        const HWND child = GetItem(position.id);
        if (!child || !moves) continue;
        moves = DeferWindowPos(moves, child, static_cast<HWND>(position.insertAfter), position.x, position.y,
                               position.width, position.height, position.flags);
    }
    if (moves) EndDeferWindowPos(moves);
    pendingPositions.clear();
}

}  // namespace pdx
