#include "core/rules/MsiChannel.h"

#include <unordered_map>

namespace pdx {
namespace {

constexpr std::wstring_view setVariablePrefix = L"PDX_SET_VARIABLE:";
constexpr std::wstring_view updateContextPrefix = L"PDX_UPDATE_CONTEXT:";

MsiCommand cut(MsiCommandKind kind, std::wstring_view assignment) {
    const size_t equals = assignment.find(L'=');
    if (equals == std::wstring_view::npos) return {MsiCommandKind::malformed, {}, {}};
    return {kind, assignment.substr(0, equals), assignment.substr(equals + 1)};
}

}  // namespace

MsiCommand parseMsiCommand(std::wstring_view text) {
    if (text.starts_with(setVariablePrefix))
        return cut(MsiCommandKind::setVariable, text.substr(setVariablePrefix.size()));
    if (text.starts_with(updateContextPrefix))
        return cut(MsiCommandKind::updateContext, text.substr(updateContextPrefix.size()));
    return {};
}

const char* msiMessageWord(uint32_t messageType) {
    static const std::unordered_map<uint32_t, const char*> words = {
        {0x00, "msifatal"},    // FATALEXIT
        {0x01, "msierr"},      // ERROR
        {0x02, "msiwarn"},     // WARNING
        {0x03, "msiuser"},     // USER
        {0x04, "msiinfo"},     // INFO
        {0x05, "msifiu"},      // FILESINUSE
        {0x06, "msires"},      // RESOLVESOURCE
        {0x07, "msidisk"},     // OUTOFDISKSPACE
        {0x08, "msiact"},      // ACTIONSTART
        {0x09, "msiactdata"},  // ACTIONDATA
        {0x0A, "msiprog"},     // PROGRESS
        {0x0B, "msicommon"},   // COMMONDATA
        {0x0C, "msiinit"},     // INITIALIZE
        {0x0D, "msiterm"},     // TERMINATE
        {0x0E, "msidlg"},      // SHOWDIALOG
        {0x0F, "msiperf"},     // PERFORMANCE
        {0x19, "msirmfiu"},    // RMFILESINUSE
        {0x1A, "msistart"},    // INSTALLSTART
        {0x1B, "msiend"},      // INSTALLEND
    };
    const auto found = words.find(messageType >> 24);
    return found == words.end() ? nullptr : found->second;
}

}  // namespace pdx
