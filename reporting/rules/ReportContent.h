// The content of an error report: its fields, and the sections of its package.
#pragma once

#include <string>
#include <string_view>

#include "platform/rules/OsNames.h"

namespace pdx {

/// All that is sent about one failed run.
struct ErrorReport {
    std::string bastionId;  ///< the SHA-1 of the machine's hash
    std::string machineHash;
    std::string note;
    std::string category = "100";
    std::string ceNumber;
    std::string fileName;  ///< the package's, set by newErrorReport
    std::string b64Md5;    ///< the package's, in base64
    std::string contentType = "x-application/gzip";
    std::string clientVersion;
    std::string package;    ///< a gzip stream
    std::string timestamp;  ///< milliseconds since the year 1601
    std::string signedUrl;
};

/// The lines before and after a section's bytes.
std::string sectionStart(std::string_view name);
std::string sectionEnd(std::string_view name);

/// "errorReporter_13333333333333.gz".
std::string packageName(std::string_view timestamp);

/// The section "userData.json": JSON on one line.
std::string userData(const ErrorReport& report);

/// The section "HardwareSurvey.json": JSON on one line, its keys sorted.
std::string hardwareSurvey(std::string_view osName, const OsInfo& version, std::string_view architecture,
                           std::string_view machineHash);

}  // namespace pdx
