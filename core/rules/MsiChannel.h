// The commands that custom actions of the client's package send in the texts of their Windows Installer messages, their
// only channel to this process.
#pragma once

#include <cstdint>
#include <string_view>

namespace pdx {

enum class MsiCommandKind {
    none,           ///< an ordinary message
    setVariable,    ///< "PDX_SET_VARIABLE:name=value"
    updateContext,  ///< "PDX_UPDATE_CONTEXT:key=value"
    malformed,      ///< one of the two prefixes without "=": ignored, also as a message
};

/// A command found in a message's text; name and value are cut from that text.
struct MsiCommand {
    MsiCommandKind kind = MsiCommandKind::none;
    std::wstring_view name;
    std::wstring_view value;
};

/// Recognises a command by its prefix at the text's start, for every kind of message. The name ends at the first "="
/// after the prefix, and the value is the rest: "PDX_SET_VARIABLE:A=B=C" sets A to "B=C".
MsiCommand parseMsiCommand(std::wstring_view text);

/// The texts by which the package reports the older client's removal.
inline constexpr std::wstring_view bastionUninstallBegin = L"CA_MSG_BASTION_UNINSTALL_BEGIN";
inline constexpr std::wstring_view bastionUninstallSuccess = L"CA_MSG_BASTION_UNINSTALL_SUCCESS";

/// The context key of the last message of a kind; null for other kinds. The kind is the message type's high byte, in
/// the order of Windows Installer's INSTALLMESSAGE values.
const char* msiMessageWord(uint32_t messageType);

}  // namespace pdx
