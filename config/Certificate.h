// The certificate that the library carries, by which it knows the maker's own machines.
#pragma once

#include <windows.h>

#include <wincrypt.h>

#include <cstdint>

#include "platform/Handles.h"

namespace pdx {

using CertificateContext = Owned<PCCERT_CONTEXT, CertFreeCertificateContext>;

/// The number of the embedded certificate.
inline constexpr uint16_t embeddedCertificateId = 109;

/// The certificate resource (type PDX_CERT, DER) of that number; null if it is missing or no certificate.
CertificateContext loadCertificateResource(uint16_t id);

/// Whether this machine builds a chain for the certificate with no trust error at all, without fetching roots that it
/// does not have. False for null. Logs nothing.
bool chainsToTrustedRoot(PCCERT_CONTEXT certificate);

}  // namespace pdx
