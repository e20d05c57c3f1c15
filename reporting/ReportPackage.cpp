#include "reporting/ReportPackage.h"

#include <windows.h>
// wincrypt.h needs the types of windows.h.
#include <wincrypt.h>

#include <vector>

#include "platform/Clock.h"
#include "platform/Handles.h"
#include "platform/Hash.h"
#include "platform/IoBound.h"
#include "platform/Log.h"
#include "platform/OpenFiles.h"
#include "platform/OsIdentity.h"
#include "platform/ProcessValue.h"
#include "platform/product/InstallerVersion.h"
#include "reporting/GzipStream.h"
#include "reporting/rules/LogLines.h"
#include "telemetry/MachineIdentity.h"

namespace pdx {
namespace {

constexpr size_t blockSize = 0x40000;

/// The next bytes of a file; empty at its end or where it cannot be read.
std::string_view readBlock(HANDLE file, std::vector<char>& block) {
    DWORD read = 0;
    if (!ReadFile(file, block.data(), static_cast<DWORD>(block.size()), &read, nullptr)) read = 0;
    return {block.data(), read};
}

/// What is left of the bounds.
struct LogBudget {
    explicit LogBudget(const LogBounds& bounds) : bytes(bounds.bytes), end(steadyTime() + bounds.time) {}
    [[nodiscard]] bool isSpent() const { return bytes <= 0 || steadyTime() >= end; }

    int64_t bytes;
    std::chrono::milliseconds end;
};

/// Adds no more than the file's present size, because a growing file would have no end, and no more than the budget.
void addLog(GzipStream& stream, HANDLE file, LogBudget& budget) {
    LARGE_INTEGER size{};
    GetFileSizeEx(file, &size);
    std::vector<char> block(blockSize);
    std::string_view bytes = readBlock(file, block);
    if (bytes.size() < 2) return;
    const LogScrubber scrubber(userScrubTexts());
    LogReader reader(logEncodingOf(bytes), scrubber);
    const TakeText take = [&](std::string_view text) { stream.write(text); };
    int64_t left = size.QuadPart;
    for (; !bytes.empty() && left > 0 && !budget.isSpent(); bytes = readBlock(file, block)) {
        reader.feed(bytes, take);
        left -= static_cast<int64_t>(bytes.size());
        budget.bytes -= static_cast<int64_t>(bytes.size());
    }
    reader.finish(take);
    if (left > 0 && budget.isSpent())
        PDX_LOG(logInfo, "buildPackage", "The error report is full: %lld bytes left out", left);
}

void addFile(GzipStream& stream, const std::wstring& path, LogBudget& budget) {
    const FileHandle file(CreateFileW(path.c_str(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_SEQUENTIAL_SCAN | noImpersonation, nullptr));
    // A link can lead to a pipe, which has no end and may never answer.
    if (!file || GetFileType(file.get()) != FILE_TYPE_DISK) {
        const DWORD error = file ? ERROR_BAD_FILE_TYPE : GetLastError();
        PDX_LOG(logInfo, "buildPackage", "Failed to open %ls for the error report: error=%08x", path, error);
        return;
    }
    const std::string name = toUtf8(path.substr(path.find_last_of(L"\\/") + 1));
    stream.write(sectionStart(name));
    addLog(stream, file.get(), budget);
    stream.write(sectionEnd(name));
}

void addLogs(GzipStream& stream, const ReportFiles& files, const LogBounds& bounds) {
    const IoBound heldUp;
    LogBudget budget(bounds);
    for (const std::wstring& path : files) {
        if (path.empty()) continue;
        if (budget.isSpent()) {
            PDX_LOG(logInfo, "buildPackage", "The error report is full: %ls and all after it left out", path);
            return;
        }
        addFile(stream, path, budget);
    }
}

void addSection(GzipStream& stream, std::string_view name, std::string_view bytes) {
    stream.write(sectionStart(name));
    stream.write(bytes);
    stream.write(sectionEnd(name));
}

constinit ProcessValue<std::string> survey;

const std::string& machineSurvey(const std::string& machineHash) {
    return survey.get(
        [&] { return hardwareSurvey(getOsVersion(), systemVersion(), getProcessorArchitecture(), machineHash); });
}

}  // namespace

ErrorReport newErrorReport() {
    ErrorReport report;
    report.machineHash = getMachineHash();
    report.bastionId = digestText(CALG_SHA1, report.machineHash, CRYPT_STRING_HEXRAW);
    report.clientVersion = installerVersion;
    report.timestamp = std::to_string(currentFileTime() / fileTimePerMillisecond);
    report.fileName = packageName(report.timestamp);
    return report;
}

void buildPackage(ErrorReport& report, const ReportFiles& files, const LogBounds& bounds) {
    GzipStream stream;
    addSection(stream, "userData.json", userData(report));
    addSection(stream, "HardwareSurvey.json", machineSurvey(report.machineHash));
    addLogs(stream, files, bounds);
    report.package = stream.finish();
    report.b64Md5 = digestText(CALG_MD5, report.package, CRYPT_STRING_BASE64);
}

void addFilesOfStem(ReportFiles& files, const std::wstring& stem) {
    WIN32_FIND_DATAW found{};
    if (stem.empty()) return;
    const FindHandle search(FindFirstFileW((stem + L'*').c_str(), &found));
    if (!search) return;
    const std::wstring folder = stem.substr(0, stem.find_last_of(L"\\/") + 1);
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) files.insert(folder + found.cFileName);
    } while (FindNextFileW(search.get(), &found));
}

void releaseMachineSurvey() { survey.clear(); }

}  // namespace pdx
