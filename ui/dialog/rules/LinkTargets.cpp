#include "ui/dialog/rules/LinkTargets.h"

namespace pdx {

std::wstring onlineLegalDocument(std::wstring_view host, std::wstring_view type, std::wstring_view language) {
    if (host.empty()) return {};
    while (host.ends_with(L'/')) host.remove_suffix(1);
    return std::wstring(host).append(L"/legalapp/").append(type).append(L"/US/").append(language).append(L"/PC/");
}

std::wstring localLegalDocument(std::wstring_view type, std::wstring_view language) {
    return std::wstring(type).append(1, L'_').append(language).append(L".html");
}

}  // namespace pdx
