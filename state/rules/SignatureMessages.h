// The log lines of a signature check.
#pragma once

#include <cstdint>

namespace pdx {

/// The log line of a check.
struct SignatureMessage {
    const char* format;  ///< with the file and the number as arguments
    uint32_t number;     ///< the last error for a missing signature, otherwise the result
};

/// The line for a result of the system's check of a signature and the last error it left.
constexpr SignatureMessage signatureMessage(uint32_t result, uint32_t lastError) {
    constexpr uint32_t noSignature = 0x800B0100;
    struct Row {
        uint32_t result;
        const char* message;
    };
    constexpr Row rows[] = {
        {0, "Successfully verified that file [%ls] was signed and signature is verified."},
        {0x800B0111,
         "Failed to verify embedded signature for file [%ls]: Signature is present, but specifically disallowed."},
        {0x800B0004, "Failed to verify embedded signature for file [%ls]: Signature is present, but not trusted."},
        {0x80092026,
         "Failed to verify embedded signature for file [%ls]: The hash representing the subject or the publisher "
         "wasn't explicitly trusted by the admin and admin policy has disabled user trust. No signature, publisher or "
         "timestamp errors."},
    };
    if (result == noSignature) {
        // No signature, a format that cannot have one, or an unknown format.
        for (const uint32_t unsignedError : {noSignature, 0x800B0003u, 0x800B0001u})
            if (lastError == unsignedError)
                return {"Failed to verify embedded signature for file [%ls]: File was not signed [last error: %u].",
                        lastError};
        return {"Failed to verify embedded signature for file [%ls]: Unknown error occurred attempting to verify.",
                lastError};
    }
    for (const Row& row : rows)
        if (result == row.result) return {row.message, result};
    return {"Failed to verify embedded signature for file [%ls]: Error is: 0x%lx.\n", result};
}

}  // namespace pdx
