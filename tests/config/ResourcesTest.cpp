#include "config/Resources.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "config/Certificate.h"
#include "tests/platform/CapturedLog.h"

namespace pdx {
namespace {

using testing::IsEmpty;

std::string_view bytesOf(const ResourceData& data) { return {data.bytes, data.size}; }

TEST(LoadResource, ReturnsNothingForAMissingResource) {
    const CapturedLog log;
    for (const ResourceId& id : {ResourceId{L"PDX_CONFIG", L"no.cfg"}, {L"PDX_CERT", uint16_t{110}}, {L"", L""}}) {
        EXPECT_EQ(loadResource(id).size, 0u) << toUtf8(id.type);
        EXPECT_EQ(loadResource(id).bytes, nullptr) << toUtf8(id.type);
    }
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST(LoadResource, TheConfigurationHasTheLineEndsOfWindows) {
    for (const wchar_t* name : {L"installer.cfg", L"production.cfg", L"integration.cfg"}) {
        const std::string_view text = bytesOf(loadResource({L"PDX_CONFIG", name}));
        ASSERT_FALSE(text.empty()) << toUtf8(name);
        for (size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1))
            ASSERT_TRUE(at > 0 && text[at - 1] == '\r') << toUtf8(name) << " at " << at;
    }
}

TEST(EmbeddedManifest, AsksForNoElevation) {
    // A library's own manifest has the number 2.
    const ResourceData manifest = loadResource({L"#24", uint16_t{2}});
    EXPECT_THAT(std::string(bytesOf(manifest)),
                testing::HasSubstr("<requestedExecutionLevel level=\"asInvoker\" uiAccess=\"false\"/>"));
}

TEST(EmbeddedCertificate, IsARootThatTheMachineDoesNotTrust) {
    const CertificateContext certificate = loadCertificateResource(embeddedCertificateId);
    ASSERT_TRUE(certificate);
    EXPECT_EQ(CertVerifyTimeValidity(nullptr, certificate.get()->pCertInfo), 0);
    EXPECT_FALSE(chainsToTrustedRoot(certificate.get()));
    EXPECT_FALSE(loadCertificateResource(110));
    EXPECT_FALSE(chainsToTrustedRoot(nullptr));
}

}  // namespace
}  // namespace pdx
