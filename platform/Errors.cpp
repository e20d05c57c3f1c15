#include "platform/Errors.h"

#include <fmt/format.h>

#include "platform/Handles.h"
#include "platform/Text.h"

namespace pdx {

std::string describeError(HRESULT result) {
    UniqueHandle<LocalMemoryTraits<wchar_t>> message;
    // With this flag the function takes the address of a pointer in place of a buffer.
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
        static_cast<DWORD>(result), LANG_NEUTRAL, reinterpret_cast<wchar_t*>(message.put()), 0, nullptr);
    std::wstring_view text(length > 0 ? message.get() : L"", length);
    text = text.substr(0, text.find_last_not_of(L" \t\r\n\v\f") + 1);
    return text.empty() ? fmt::format("{:08x}", static_cast<uint32_t>(result)) : toUtf8(text);
}

}  // namespace pdx
