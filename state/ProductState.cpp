#include "state/ProductState.h"

#include <windows.h>

#include "platform/Processes.h"
#include "platform/Registry.h"
#include "platform/RegistryPaths.h"

namespace pdx {

void setUnavailable(bool available) {
    const uint32_t unavailable = available ? 0 : 1;
    for (const RegistryView view : {view32, view64})
        RegistryKey::localMachine(view).setSubKeyValue(productKey, L"IsUnavailable", unavailable);
    Sleep(200);
    constexpr std::wstring_view helpers[] = {L"PalisadeConnect_microsoft.exe"};
    terminateProcesses(helpers);
}

}  // namespace pdx
