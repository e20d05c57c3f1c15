// The measurements. Each takes what it needs, prints nothing and throws std::runtime_error when it cannot measure.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "bench/Measurement.h"

namespace pdx {

/// A timeline from the load of the library to the first full paint of its welcome page, each start in a new process of
/// this program that leaves its result in the scratch file; medians.
Measurements measureColdStart(const std::filesystem::path& library, const std::filesystem::path& scratch);
/// What such a process does: one cold start, its moments written to the file; with "log" after all log lines with their
/// time, with "roots" of a process that has imported the root certificates before.
void writeColdStart(const std::filesystem::path& library, const std::filesystem::path& result, std::wstring_view how);
/// From BootstrapperApplicationCreate to the return of OnStartup, of the first load in the process and of the median.
Measurements measureStartup(const std::filesystem::path& library);
/// The dialog of the shipped library: its welcome page from OnStartup on, a repaint, what it takes of memory, and what
/// of a core while a bar of unknown progress moves.
Measurements measureWindow(const std::filesystem::path& library);
/// Marked-up text: parsed, measured and placed, without a paint.
Measurements measureLayout();
/// Windows Installer's messages through OnExecuteMsiMessage of the shipped library, and what of memory stays taken.
Measurements measureMessages(const std::filesystem::path& library);
/// A log line and the scrubbing of its text, each also as a ratio to formatting the line alone.
Measurements measureLogging();
/// What telling an event costs its caller while a service is silent, how fast events reach a service and what they take
/// of memory before; what is found out of the machine for them. The host is one that answers as the query tells it
/// (harness/services/testhost.py), "https://host.name".
Measurements measureTelemetry(const std::string& host);
/// A repair's clean-up of a client with 20,000 files, and the purge of a machine with 50,000 component keys, each also as
/// a ratio to the platform's calls alone.
Measurements measureRepair();
/// The lock and the check of the files of a raised start: those of that folder, which the maker has signed.
Measurements measureElevatedFiles(const std::filesystem::path& signedFiles);
/// The package of an error report: how fast logs go into it, also as a ratio to packing alone, and what it takes of
/// memory. The logs lie in the scratch file meanwhile.
Measurements measureReport(const std::filesystem::path& scratch);
/// The library's file by its sections.
Measurements measureSize(const std::filesystem::path& library);

}  // namespace pdx
