#include "state/SignatureTrust.h"

#include <windows.h>
// The next three need the types of windows.h.
#include <softpub.h>
#include <wincrypt.h>
#include <wintrust.h>

#include <array>
#include <vector>

#include "config/Certificate.h"
#include "platform/Handles.h"
#include "platform/Log.h"
#include "platform/SystemFunction.h"
#include "state/rules/SignatureMessages.h"

namespace pdx {
namespace {

constexpr std::wstring_view makersName = L"Corvane Works, Inc.";

using CertificateStore = Owned<HCERTSTORE, [](HCERTSTORE store) { CertCloseStore(store, 0); }>;

/// The certificate of a file's first signer; null if there is none.
CertificateContext signerOf(const std::wstring& path) {
    constexpr DWORD encoding = X509_ASN_ENCODING | PKCS_7_ASN_ENCODING;
    CertificateStore store;
    Owned<HCRYPTMSG, CryptMsgClose> message;
    if (!CryptQueryObject(CERT_QUERY_OBJECT_FILE, path.c_str(), CERT_QUERY_CONTENT_FLAG_PKCS7_SIGNED_EMBED,
                          CERT_QUERY_FORMAT_FLAG_BINARY, 0, nullptr, nullptr, nullptr, store.put(), message.put(),
                          nullptr))
        return {};
    DWORD size = 0;
    if (!CryptMsgGetParam(message.get(), CMSG_SIGNER_INFO_PARAM, 0, nullptr, &size)) return {};
    std::vector<std::byte> bytes(size);
    if (bytes.size() < sizeof(CMSG_SIGNER_INFO) ||
        !CryptMsgGetParam(message.get(), CMSG_SIGNER_INFO_PARAM, 0, bytes.data(), &size))
        return {};
    const auto& signer = *reinterpret_cast<const CMSG_SIGNER_INFO*>(bytes.data());
    CERT_INFO wanted{};
    wanted.Issuer = signer.Issuer;
    wanted.SerialNumber = signer.SerialNumber;
    return CertificateContext(
        CertFindCertificateInStore(store.get(), encoding, 0, CERT_FIND_SUBJECT_CERT, &wanted, nullptr));
}

/// Whether the file's embedded signature fits the file's hash. Neither the certificate chain nor revocation is checked.
/// Logs each outcome at INFO.
bool verifyEmbeddedSignature(const std::wstring& path) {
    WINTRUST_FILE_INFO file{};
    file.cbStruct = sizeof file;
    file.pcwszFilePath = path.c_str();
    WINTRUST_DATA data{};
    data.cbStruct = sizeof data;
    data.dwUIChoice = WTD_UI_NONE;
    data.fdwRevocationChecks = WTD_REVOKE_NONE;
    data.dwUnionChoice = WTD_CHOICE_FILE;
    data.pFile = &file;
    data.dwStateAction = WTD_STATEACTION_IGNORE;
    data.dwProvFlags = WTD_HASH_ONLY_FLAG;
    GUID action = WINTRUST_ACTION_GENERIC_VERIFY_V2;
    // Loaded only here, because few runs need it.
    const auto verify = lookUp<decltype(&WinVerifyTrust)>(systemLibrary(L"wintrust.dll"), "WinVerifyTrust");
    const auto result = static_cast<uint32_t>(verify ? verify(nullptr, &action, &data) : TRUST_E_PROVIDER_UNKNOWN);
    const SignatureMessage message = signatureMessage(result, GetLastError());
    PDX_LOG(logInfo, "verifyEmbeddedSignature", message.format, path, message.number);
    return result == 0;
}

}  // namespace

bool isValidPalisadeCertificate(const std::wstring& path) {
    constexpr const char* function = "isValidPalisadeCertificate";
    if (!verifyEmbeddedSignature(path)) {
        PDX_LOG(logInfo, function, "Embedded signature missing or invalid for file: %ls", path);
        return false;
    }
    const CertificateContext signer = signerOf(path);
    if (!signer) {
        PDX_LOG(logInfo, function, "Unable to read certificate for file: %ls", path);
        return false;
    }
    std::array<wchar_t, 256> name{};
    // The length includes the end mark, so it is 1 without a name.
    const DWORD length =
        CertGetNameStringW(signer.get(), CERT_NAME_SIMPLE_DISPLAY_TYPE, 0, nullptr, name.data(), name.size());
    if (length < 2) {
        PDX_LOG(logInfo, function, "Unable to read certificate subject name from file: %ls", path);
        return false;
    }
    const std::wstring_view subject(name.data(), length - 1);
    if (subject != makersName) {
        PDX_LOG(logInfo, function,
                "Certificate was valid but incorrect subject name (i.e. wrong certificate) for file: %ls; Subject "
                "name: %ls",
                path, subject);
        return false;
    }
    PDX_LOG(logInfo, function, "The file has a valid Palisade certificate: %ls", path);
    return true;
}

}  // namespace pdx
