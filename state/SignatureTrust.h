// Whether a file bears a signature in the maker's name.
#pragma once

#include <string>

namespace pdx {

/// Whether the file's embedded signature fits its content and the signer's certificate names "Corvane Works, Inc." as
/// its subject. That is all: a certificate of anybody's own making in that name passes. Each outcome is logged at INFO.
bool isValidPalisadeCertificate(const std::wstring& path);

}  // namespace pdx
