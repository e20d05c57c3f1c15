// Whether a file was signed by the maker.
#pragma once

#include <string>

namespace pdx {

/// Whether the file bears a valid signature of "Corvane Works, Inc.". Each outcome is logged at INFO.
bool isValidPalisadeCertificate(const std::wstring& path);

/// Whether the file's embedded signature is whole: its hash is that of the file. Neither its chain nor its revocation
/// is asked. Each outcome is logged at INFO.
bool verifyEmbeddedSignature(const std::wstring& path);

}  // namespace pdx
