// The actions of the links in marked-up text, and the addresses of the legal documents.
#pragma once

#include <string>
#include <string_view>

#include "platform/rules/AsciiCase.h"

namespace pdx {

enum class LinkAction {
    nothing,
    open,  ///< opens the whole address with the system's program for it
    userAgreement,
    privacyPolicy,
    showError,  ///< the site's address is missing in the settings
};

/// The action for a link's text and its parts as a URL.
constexpr LinkAction linkAction(std::wstring_view href, std::wstring_view scheme, std::wstring_view path) {
    if (equalsAsciiCase(scheme, L"http") || equalsAsciiCase(scheme, L"https")) return LinkAction::open;
    if (equalsAsciiCase(scheme, L"action")) {
        if (path == L"openuseragreement") return LinkAction::userAgreement;
        return path == L"openprivacypolicy" ? LinkAction::privacyPolicy : LinkAction::nothing;
    }
    return href.starts_with(L'/') ? LinkAction::showError : LinkAction::nothing;
}

/// The address of a document on the legal documents' host. Slashes at the host's end are dropped. Empty without a host.
std::wstring onlineLegalDocument(std::wstring_view host, std::wstring_view type, std::wstring_view language);

/// The file name of a document that ships with the program.
std::wstring localLegalDocument(std::wstring_view type, std::wstring_view language);

/// The privacy policy, which is only online.
inline constexpr std::wstring_view privacyDocument = L"WEBPRIVACY";
inline constexpr std::wstring_view userAgreementDocument = L"WEBTERMS";

}  // namespace pdx
