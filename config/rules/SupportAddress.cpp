#include "config/rules/SupportAddress.h"

namespace pdx {
namespace {

/// The placeholder of the support site's address in the strings, before the path of its link.
constexpr std::wstring_view supportPlaceholder = L"{support}";

}  // namespace

std::wstring fillSupportAddress(std::wstring text, std::wstring_view address) {
    if (address.ends_with(L'/')) address.remove_suffix(1);
    for (size_t at = text.find(supportPlaceholder); at != std::wstring::npos; at = text.find(supportPlaceholder, at)) {
        text.replace(at, supportPlaceholder.size(), address);
        at += address.size();  // a placeholder in the address is not replaced again
    }
    return text;
}

}  // namespace pdx
