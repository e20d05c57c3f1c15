#include "ui/toolkit/GdiPlus.h"

#include "platform/Log.h"
#include "platform/Once.h"

namespace pdx {

bool startGraphics() {
    // The library may be unloaded long before the process ends. Without this the last reference on GDI+ would go with
    // it, and the thread that GDI+ has started would run on in unmapped memory.
    HMODULE pinned = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN, L"gdiplus.dll", &pinned);

    static ULONG_PTR token = 0;
    static Gdiplus::Status status = Gdiplus::Ok;
    static constinit Once started;
    started.run([] {
        const Gdiplus::GdiplusStartupInput version1;
        status = Gdiplus::GdiplusStartup(&token, &version1, nullptr);
    });
    if (status != Gdiplus::Ok) PDX_LOG(logError, "startGraphics", "GdiplusStartup failed: status=%d", int{status});
    return status == Gdiplus::Ok;
}

}  // namespace pdx
