// A window that is made from a dialog template.
#pragma once

#include <vector>

#include "ui/toolkit/rules/DialogLayout.h"
#include "ui/toolkit/rules/PendingPositions.h"
#include "ui/toolkit/Window.h"

namespace pdx {

/// A child as it stood when the template's layout record was read. The percentages are kept and not applied: the
/// dialog cannot be resized, pages start from the rectangles.
struct LayoutItem {
    HWND hwnd = nullptr;
    Rect rect;  ///< in the dialog's client coordinates
    int32_t sizeX = 0;
    int32_t sizeY = 0;
    int32_t moveX = 0;
    int32_t moveY = 0;
};

class Dialog : public Window {
  public:
    explicit Dialog(uint16_t templateNumber) : templateId(templateNumber) {}
    ~Dialog() override;

    /// Makes the dialog from its template, unless there is one already; the parameters are not looked at.
    HWND Create(const CreateParams& params) override;
    MessageResult HandleMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
    /// Leaves the message unhandled: the platform's dialog manager does the rest.
    MessageResult DefaultProc(UINT message, WPARAM wparam, LPARAM lparam) override;

    /// The child window with that identifier; null when there is none.
    [[nodiscard]] HWND GetItem(int32_t id) const;
    /// Where the child stood in the template; all zero when the layout record does not cover it.
    [[nodiscard]] Rect GetInitialRect(int32_t id) const;
    /// Where the child stands now.
    [[nodiscard]] Rect GetChildRectById(int32_t id) const;

    /// Asks for a position (SetWindowPos flags) that ApplyPositions will give to the child; requests for the same child
    /// are merged. A null rectangle leaves position and size alone.
    void QueuePosition(int32_t id, const Rect* rect, UINT flags, HWND insertAfter = nullptr);
    void QueuePosition(int32_t id, const Box& box, UINT flags, HWND insertAfter = nullptr);
    void ClearPositions();
    /// Moves all children at once and forgets the requests.
    void ApplyPositions();

  protected:
    uint16_t templateId;
    int32_t initialClientWidth = 0;
    int32_t initialClientHeight = 0;
    std::vector<LayoutItem> layoutItems;
    PendingPositions pendingPositions;

  private:
    static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;
    void ReadLayout();
};

}  // namespace pdx
