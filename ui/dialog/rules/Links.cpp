#include "ui/dialog/rules/Links.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

namespace pdx {

std::wstring onlineLegalDocument(std::wstring_view host, std::wstring_view type, std::wstring_view language) {
    if (host.empty()) return {};
    while (host.ends_with(L'/')) host.remove_suffix(1);
    return fmt::format(L"{host}/legalapp/{type}/US/{lang}/PC/", fmt::arg(L"host", host), fmt::arg(L"type", type),
                       fmt::arg(L"lang", language));
}

std::wstring localLegalDocument(std::wstring_view type, std::wstring_view language) {
    return fmt::format(L"{type}_{lang}.html", fmt::arg(L"type", type), fmt::arg(L"lang", language));
}

}  // namespace pdx
