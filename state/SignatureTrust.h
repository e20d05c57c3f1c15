// Whether a file bears a signature in the maker's name.
#pragma once

#include <string>

namespace pdx {

/// Whether the file's embedded signature fits its content and the signer's certificate has the subject "Corvane Works,
/// Inc.". No more: a self-made certificate in that name passes. Logs each outcome at INFO.
bool isValidPalisadeCertificate(const std::wstring& path);

}  // namespace pdx
