#include "state/rules/SignatureMessages.h"

#include <gtest/gtest.h>

#include <string>

namespace pdx {
namespace {

TEST(SignatureMessages, NameTheResultOrTheLastError) {
    constexpr uint32_t other = 5, noSignature = 0x800B0100;
    constexpr const char* success = "Successfully verified that file [%ls] was signed and signature is verified.";
    constexpr const char* notSigned = "File was not signed [last error: %u].";
    const struct {
        uint32_t result, lastError;
        const char* message;
        uint32_t number;
    } rows[] = {
        {0, other, success, 0},
        {noSignature, noSignature, notSigned, noSignature},
        {noSignature, 0x800B0003, notSigned, 0x800B0003},
        {noSignature, 0x800B0001, notSigned, 0x800B0001},
        {noSignature, other, "Unknown error occurred attempting to verify.", other},
        {0x800B0111, other, "Signature is present, but specifically disallowed.", 0x800B0111},
        {0x800B0004, other, "Signature is present, but not trusted.", 0x800B0004},
        {0x80092026, other,
         "The hash representing the subject or the publisher wasn't explicitly trusted by the admin and admin policy "
         "has disabled user trust. No signature, publisher or timestamp errors.",
         0x80092026},
        {0x80096010, noSignature, "Error is: 0x%lx.\n", 0x80096010},
    };
    for (const auto& row : rows) {
        const std::string failure = std::string("Failed to verify embedded signature for file [%ls]: ") + row.message;
        const SignatureMessage message = signatureMessage(row.result, row.lastError);
        EXPECT_EQ(message.format, row.message == success ? success : failure);
        EXPECT_EQ(message.number, row.number) << row.message;
    }
}

}  // namespace
}  // namespace pdx
