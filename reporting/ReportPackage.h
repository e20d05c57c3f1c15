// The package of an error report: its sender, the machine, and the log files without the user's name.
#pragma once

#include <set>
#include <string>

#include "platform/Text.h"
#include "reporting/rules/ReportContent.h"

namespace pdx {

/// The files of a report, each once.
using ReportFiles = std::set<std::wstring, LessIgnoreCase>;

/// A report of this machine and this moment: it has its time stamp and the name of its package, but no package yet.
ErrorReport newErrorReport();

/// Fills in the package and its digest: two sections about the user and the machine, and one for each file
/// in the set's order. Each line of a log has the user's profile path and the login code taken out; UTF-16 logs
/// become UTF-8. A file that cannot be opened gets no section, one of less than two bytes an empty one; files may be in
/// use and may grow. Holds a block of a file, a begun line of 1 MiB at most and the package in memory. Throws
/// std::bad_alloc.
void buildPackage(ErrorReport& report, const ReportFiles& files);

/// All files that begin as one of the stems (paths without their ending), added to the set: a log that has rolled over
/// leaves several.
void addFilesOfStem(ReportFiles& files, const std::wstring& stem);

/// Frees what was looked up once for the process, when the library is unmapped in a process that continues.
void releaseReportPackage();

}  // namespace pdx
