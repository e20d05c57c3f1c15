#include "ui/toolkit/GdiPlus.h"

#include "platform/Log.h"
#include "platform/Once.h"

namespace pdx {

bool startGraphics() {
    // The thread that GDI+ starts may outlive this library: GDI+ is bound with its first call and never freed.
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
