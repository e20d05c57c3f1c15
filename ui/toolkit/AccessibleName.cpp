#include "ui/toolkit/AccessibleName.h"

#include <oleacc.h>

#include "platform/ComPtr.h"

namespace pdx {

constinit ServiceHolder<AccessibleNames> g_accessibleNames;

void publishAccessibleName(HWND window, const std::wstring& name) {
    if (const auto standIn = g_accessibleNames.get()) return standIn->publish(window, name);
    ComPtr<IAccPropServices> service;
    if (FAILED(CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices,
                                service.putVoid())))
        return;
    service->SetHwndPropStr(window, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, PROPID_ACC_NAME, name.c_str());
}

}  // namespace pdx
