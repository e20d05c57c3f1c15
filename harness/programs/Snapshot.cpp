#include "harness/programs/Snapshot.h"

#include "ui/toolkit/NativeHandles.h"

namespace pdx {
namespace {

/// GDI+'s own encoder for PNG.
constexpr CLSID pngEncoder = {0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};

}  // namespace

Snapshot::Snapshot(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    size = {client.right, client.bottom};
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);

    const HDC shown = GetDC(window);
    {
        const MemoryContext memory(CreateCompatibleDC(shown));
        const NativeBitmap pixels(CreateCompatibleBitmap(shown, size.width, size.height));
        {
            const SelectedObject selected(memory, pixels.get());
            BitBlt(memory.get(), 0, 0, size.width, size.height, shown, 0, 0, SRCCOPY);
        }
        Gdiplus::GpBitmap* made = nullptr;
        collect(Gdiplus::DllExports::GdipCreateBitmapFromHBITMAP(pixels.get(), nullptr, &made));
        *put() = made;
    }
    ReleaseDC(window, shown);
}

Color Snapshot::getPixel(Point point) const {
    Gdiplus::ARGB color = 0;
    collect(
        Gdiplus::DllExports::GdipBitmapGetPixel(static_cast<Gdiplus::GpBitmap*>(native()), point.x, point.y, &color));
    return color;
}

bool Snapshot::savePng(const std::wstring& path) const {
    return Gdiplus::DllExports::GdipSaveImageToFile(native(), path.c_str(), &pngEncoder, nullptr) == Gdiplus::Ok;
}

}  // namespace pdx
