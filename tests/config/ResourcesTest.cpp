#include "config/Resources.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "config/Certificate.h"
#include "tests/platform/CapturedLog.h"

namespace pdx {
namespace {

using testing::IsEmpty;

std::string_view bytesOf(const ResourceData& data) { return {data.bytes, data.size}; }

TEST(LoadResource, GivesNothingForWhatIsMissing) {
    const CapturedLog log;
    const ResourceId missing[] = {
        {L"PDX_CONFIG", L"no.cfg"}, {L"PDX_CONFIG", L""},         {L"PDX_CONFIG", uint16_t{109}},
        {L"PDX_NONE", L"a"},        {L"PDX_CERT", uint16_t{110}}, {L"", uint16_t{0}},
    };
    for (const ResourceId& id : missing) {
        EXPECT_EQ(loadResource(id).size, 0u) << toUtf8(id.type);
        EXPECT_EQ(loadResource(id).bytes, nullptr) << toUtf8(id.type);
    }
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST(LoadResource, CarriesItsConfigurationWithTheLineEndsOfWindows) {
    for (const wchar_t* name : {L"installer.cfg", L"production.cfg", L"integration.cfg"}) {
        const std::string_view text = bytesOf(loadResource({L"PDX_CONFIG", name}));
        ASSERT_FALSE(text.empty()) << toUtf8(name);
        for (size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1))
            ASSERT_TRUE(at > 0 && text[at - 1] == '\r') << toUtf8(name) << " at " << at;
    }
}

TEST(EmbeddedManifest, AsksForNoRaisedRights) {
    // A library's own manifest has the number 2.
    const ResourceData manifest = loadResource({L"#24", uint16_t{2}});
    EXPECT_THAT(std::string(bytesOf(manifest)),
                testing::HasSubstr("<requestedExecutionLevel level=\"asInvoker\" uiAccess=\"false\"/>"));
}

std::wstring subjectOf(PCCERT_CONTEXT certificate) {
    wchar_t name[256] = {};
    CertGetNameStringW(certificate, CERT_NAME_SIMPLE_DISPLAY_TYPE, 0, nullptr, name, 256);
    return name;
}

TEST(EmbeddedCertificate, IsARootThatThisMachineDoesNotTrust) {
    const CapturedLog log;
    const CertificateContext certificate = loadCertificateResource(embeddedCertificateId);
    ASSERT_TRUE(certificate);
    EXPECT_EQ(subjectOf(certificate.get()), L"Palisade Test Root");
    EXPECT_EQ(CertVerifyTimeValidity(nullptr, certificate.get()->pCertInfo), 0);
    EXPECT_FALSE(chainsToTrustedRoot(certificate.get()));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST(EmbeddedCertificate, IsNothingWithoutItsResource) {
    EXPECT_FALSE(loadCertificateResource(0));
    EXPECT_FALSE(loadCertificateResource(110));
    EXPECT_FALSE(chainsToTrustedRoot(nullptr));
}

}  // namespace
}  // namespace pdx
