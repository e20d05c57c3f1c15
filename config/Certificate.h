// The embedded certificate, by which the library recognises the maker's machines.
#pragma once

#include <windows.h>

#include <wincrypt.h>

#include <cstdint>

#include "platform/Handles.h"

namespace pdx {

using CertificateContext = Owned<PCCERT_CONTEXT, CertFreeCertificateContext>;

inline constexpr uint16_t embeddedCertificateId = 109;

/// The certificate resource (type PDX_CERT, DER) of that number; null if it is missing or malformed.
CertificateContext loadCertificateResource(uint16_t id);

/// Whether the certificate chain on this machine has no trust error, without fetching missing roots. False for null.
/// Logs nothing.
bool chainsToTrustedRoot(PCCERT_CONTEXT certificate);

}  // namespace pdx
