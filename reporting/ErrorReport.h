// The report of a failed run: a package of logs for the maker's support, sent when the user has agreed to it.
#pragma once

#include <string>

#include "reporting/ReportPackage.h"

namespace pdx {

/// Packs the files, requests a place from the configured service (app.oer.url), and puts the package there. The
/// report's tracking id; empty if the service gave no place. Blocks the thread until all is done: its requests wait as
/// long as the platform does. Never throws; a failure is logged and otherwise silent.
std::string sendErrorReport(const ReportFiles& files) noexcept;

}  // namespace pdx
