// The package of an error report: its sender, the machine, and the log files without the user's name.
#pragma once

#include <chrono>
#include <cstdint>
#include <set>
#include <string>

#include "platform/Text.h"
#include "reporting/rules/ReportContent.h"

namespace pdx {

/// The files of a report, each once.
using ReportFiles = std::set<std::wstring, LessIgnoreCase>;

/// What the logs of a report may take. A sparse file can be longer than the disc, and each opening can be held up by
/// another program.
struct LogBounds {
    int64_t bytes = 1 << 30;
    std::chrono::milliseconds time = std::chrono::minutes(5);
};

/// A report about this machine, with its time stamp and the file name of its package, but without the package.
ErrorReport newErrorReport();

/// Sets the package and its digest: two sections about the user and the machine, and one for each file in the set's
/// order. The user's profile path and the login code are removed from logs (LogScrubber), and UTF-16 logs become UTF-8.
/// A file that cannot be opened has no section. One of fewer than two bytes has an empty section. Files may be in use
/// and may grow. Once the bounds are reached, the current block is the last one. What is left out is logged. In memory
/// are a block of a file, a line of at most 1 MiB, and the package. Throws std::bad_alloc.
void buildPackage(ErrorReport& report, const ReportFiles& files, const LogBounds& bounds = {});

/// Adds all files whose paths begin with the stem, a path without its ending: a log may roll over to several files.
void addFilesOfStem(ReportFiles& files, const std::wstring& stem);

/// Frees the machine's section, which all reports share, when the library is unmapped in a process that continues.
void releaseMachineSurvey();

}  // namespace pdx
