// The small protocol that custom actions of the client's package speak in the texts of their Windows Installer
// messages, which are their only way to this process.
#pragma once

#include <cstdint>
#include <string_view>

namespace pdx {

enum class MsiCommandKind {
    none,           ///< an ordinary message
    setVariable,    ///< "PDX_SET_VARIABLE:name=value"
    updateContext,  ///< "PDX_UPDATE_CONTEXT:key=value"
    malformed,      ///< one of the two prefixes without "=": dropped, and not kept as a message either
};

/// A command found in a message's text; name and value are cut from that text.
struct MsiCommand {
    MsiCommandKind kind = MsiCommandKind::none;
    std::wstring_view name;
    std::wstring_view value;
};

/// Recognises a command by its prefix at the text's start, whatever the message's kind. The name ends at the first "="
/// after the prefix, the value is all after it: "PDX_SET_VARIABLE:A=B=C" sets A to "B=C". The value thus reaches to
/// the text's end, and where the text ends in a zero so does the value.
MsiCommand parseMsiCommand(std::wstring_view text);

/// Whole texts by which the package reports the older client's removal.
inline constexpr std::wstring_view bastionUninstallBegin = L"CA_MSG_BASTION_UNINSTALL_BEGIN";
inline constexpr std::wstring_view bastionUninstallSuccess = L"CA_MSG_BASTION_UNINSTALL_SUCCESS";

/// The word under which the last message of a kind is kept, by the high byte of the message type (the order of Windows
/// Installer's INSTALLMESSAGE values); null for other kinds.
const char* msiMessageWord(uint32_t messageType);

}  // namespace pdx
