#include "core/rules/MsiChannel.h"

#include "fuzz/Target.h"
#include "platform/rules/Utf8.h"

namespace pdx::fuzz {

void msi_channel(std::string_view input) {
    const std::wstring text = toWide(input);
    const MsiCommand command = parseMsiCommand(text);
    const bool isCommand = command.kind == MsiCommandKind::setVariable || command.kind == MsiCommandKind::updateContext;
    const std::wstring prefix =
        command.kind == MsiCommandKind::setVariable ? L"PDX_SET_VARIABLE:" : L"PDX_UPDATE_CONTEXT:";
    if (isCommand)
        require(text == prefix + std::wstring(command.name) + L"=" + std::wstring(command.value) &&
                    command.name.find(L'=') == std::wstring_view::npos,
                "prefix, name and value are the text");
    else
        require(command.name.empty() && command.value.empty(), "what is no command has no parts");
    const bool hasPrefix = text.starts_with(L"PDX_SET_VARIABLE:") || text.starts_with(L"PDX_UPDATE_CONTEXT:");
    require(hasPrefix == (command.kind != MsiCommandKind::none), "the prefix alone makes a command");
}

}  // namespace pdx::fuzz
