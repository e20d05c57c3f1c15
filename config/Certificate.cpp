#include "config/Certificate.h"

#include "config/Resources.h"

namespace pdx {

CertificateContext loadCertificateResource(uint16_t id) {
    const ResourceData data = loadResource({L"PDX_CERT", id});
    if (data.size == 0) return {};
    const auto* encoded = reinterpret_cast<const BYTE*>(data.bytes);
    return CertificateContext(CertCreateCertificateContext(X509_ASN_ENCODING, encoded, data.size));
}

bool chainsToTrustedRoot(PCCERT_CONTEXT certificate) {
    if (!certificate) return false;
    CERT_CHAIN_PARA anyUsage{};
    anyUsage.cbSize = sizeof anyUsage;
    Owned<PCCERT_CHAIN_CONTEXT, CertFreeCertificateChain> chain;
    if (!CertGetCertificateChain(HCCE_LOCAL_MACHINE, certificate, nullptr, nullptr, &anyUsage,
                                 CERT_CHAIN_DISABLE_AUTH_ROOT_AUTO_UPDATE, nullptr, chain.put()))
        return false;
    return chain && chain.get()->TrustStatus.dwErrorStatus == CERT_TRUST_NO_ERROR && chain.get()->cChain > 0;
}

}  // namespace pdx
