// The measurements. Each prints nothing, and throws std::runtime_error when it cannot measure.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "bench/Measurement.h"

namespace pdx {

/// The times of a start, from the load of the library to the first full paint of its welcome page. They are medians of
/// starts in new processes of this program, which write their results to the scratch file.
Measurements measureColdStart(const std::filesystem::path& library, const std::filesystem::path& scratch);
/// Makes one cold start and writes its moments to the file. With "log" the file also has all log lines with their time.
/// With "roots" the process imports the root certificates before.
void writeColdStart(const std::filesystem::path& library, const std::filesystem::path& result, std::wstring_view how);
/// From BootstrapperApplicationCreate to the return of OnStartup: the first load in the process, and the median.
Measurements measureStartup(const std::filesystem::path& library);
/// The dialog of the shipped library: from OnStartup to its welcome page, a repaint, its memory, and the processor load
/// of the moving bar.
Measurements measureWindow(const std::filesystem::path& library);
/// Marked-up text: parsing, measuring and placing, without a paint.
Measurements measureLayout();
/// Windows Installer's messages through OnExecuteMsiMessage of the shipped library, and the memory that they leave in
/// use.
Measurements measureMessages(const std::filesystem::path& library);
/// A log line and the scrubbing of its text, each also as a ratio to formatting the line alone.
Measurements measureLogging();
/// Events: their cost for the sender while a service does not answer, the rate of delivery, and the memory of queued
/// ones. Also the time to collect the facts of the machine. The host, "https://host.name", is
/// harness/services/testhost.py, which answers as the query asks.
Measurements measureTelemetry(const std::string& host);
/// A repair's clean-up of a client with 20,000 files, and the purge of a machine with 50,000 component keys. Each is
/// also a ratio to the platform's calls alone.
Measurements measureRepair();
/// Locking and checking the files of an elevated start, which are copied from that folder of signed files.
Measurements measureElevatedFiles(const std::filesystem::path& signedFiles);
/// The package of an error report: the rate at which it takes logs, also as a ratio to packing alone, and its memory.
/// The scratch file holds the logs.
Measurements measureReport(const std::filesystem::path& scratch);
/// The size of the library's file and of its sections.
Measurements measureSize(const std::filesystem::path& library);

}  // namespace pdx
