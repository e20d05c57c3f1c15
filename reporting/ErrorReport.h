// The report of a failed run: a package of logs for the maker's support, sent when the user has agreed to it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "reporting/ReportPackage.h"

namespace pdx {

/// Packs the files, asks the configured service (app.oer.url) for a place, and puts the package there. The report's
/// tracking id; empty if the service gave no place. Blocks the thread until all is done: its requests wait as long as
/// the platform does. Never throws; a failure is logged and otherwise silent.
std::string sendErrorReport(const ReportFiles& files) noexcept;

/// A place that the service gives a report.
struct UploadPlace {
    std::string trackingId;
    std::string signedUrl;
};

/// The service's answer (XML); nothing unless it is well-formed and names both.
std::optional<UploadPlace> readUploadPlace(std::string_view response);

/// The request for a place as XML, in UTF-8; empty if the system's XML writer cannot be had. COM must be initialised on
/// the calling thread.
std::string uploadRequest(const ErrorReport& report, const std::string& launchSource);

}  // namespace pdx
