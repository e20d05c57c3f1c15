// Where the legal documents are found.
#pragma once

#include <string>
#include <string_view>

namespace pdx {

/// The address on the legal documents' host (without a slash at its end); empty without a host.
std::wstring onlineLegalDocument(std::wstring_view host, std::wstring_view type, std::wstring_view language);

/// The file name of a document that is shipped beside the program.
std::wstring localLegalDocument(std::wstring_view type, std::wstring_view language);

/// The privacy policy, which is only online.
inline constexpr std::wstring_view privacyDocument = L"WEBPRIVACY";
inline constexpr std::wstring_view userAgreementDocument = L"WEBTERMS";

}  // namespace pdx
