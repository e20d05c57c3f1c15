// The report of a failed run: a package of logs for the maker's support, sent with the user's consent.
#pragma once

#include <string>

#include "reporting/ReportPackage.h"

namespace pdx {

/// Packs the files, requests an upload address from the configured service (app.oer.url), and uploads the package.
/// Returns the report's tracking id; empty if the service named no address. Blocks until the upload has ended, as long
/// as the platform's requests take. Never throws; failures are only logged.
std::string sendErrorReport(const ReportFiles& files) noexcept;

}  // namespace pdx
