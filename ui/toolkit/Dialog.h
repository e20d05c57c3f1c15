// A window made from a dialog template.
#pragma once

#include <vector>

#include "ui/toolkit/rules/PendingPositions.h"
#include "ui/toolkit/Window.h"

namespace pdx {

/// A child as the template placed it, with its layout record. The percentages and the dialog's initial size are kept
/// but not applied: the dialog cannot be resized, and pages start from the rectangles.
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

    /// Makes the dialog from its template, unless the object has one, and returns its handle, or null on failure. The
    /// parameters are ignored.
    HWND Create(const CreateParams& params) override;
    MessageResult HandleMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
    /// Leaves the message unhandled, for the platform's dialog manager.
    MessageResult DefaultProc(UINT, WPARAM, LPARAM) override { return unhandled(); }

    /// The child window with the identifier; null for none.
    [[nodiscard]] HWND GetItem(int32_t id) const { return GetDlgItem(hwnd, id); }
    /// The child's rectangle in the template, in client coordinates; all zero when the child has no layout record.
    [[nodiscard]] Rect GetInitialRect(int32_t id) const;
    /// The child's rectangle now, in client coordinates.
    [[nodiscard]] Rect GetChildRectById(int32_t id) const { return GetChildRect(GetItem(id)); }

    /// Queues a position (SetWindowPos flags) for ApplyPositions; requests for the same child are merged. A null
    /// rectangle leaves position and size unchanged.
    void QueuePosition(int32_t id, const Rect* rect, UINT flags, HWND insertAfter = nullptr);
    void QueuePosition(int32_t id, const Box& box, UINT flags, HWND insertAfter = nullptr);
    void ClearPositions() { pendingPositions.clear(); }
    /// Moves all children at once and clears the queue.
    void ApplyPositions();

  protected:
    uint16_t templateId;
    int32_t initialClientWidth = 0;
    int32_t initialClientHeight = 0;
    std::vector<LayoutItem> layoutItems;
    PendingPositions pendingPositions;

  private:
    static INT_PTR CALLBACK dialogProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;
    void readLayout();
};

}  // namespace pdx
