#include "platform/CommandLine.h"

#include <windows.h>
// shellapi.h needs the types of windows.h.
#include <shellapi.h>

#include "platform/Handles.h"

namespace pdx {

std::vector<std::wstring> processArguments() {
    int count = 0;
    const UniqueHandle<LocalMemoryTraits<LPWSTR>> all(CommandLineToArgvW(GetCommandLineW(), &count));
    if (!all || count < 1) return {};
    return {all.get() + 1, all.get() + count};
}

}  // namespace pdx
