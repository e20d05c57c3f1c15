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

/// Up to the size that the file has now, because one that grows would have no end, and while bytes are left.
void addLog(GzipStream& stream, HANDLE file, int64_t& bytesLeft) {
    LARGE_INTEGER size{};
    GetFileSizeEx(file, &size);
    std::vector<char> block(blockSize);
    std::string_view bytes = readBlock(file, block);
    if (bytes.size() < 2) return;
    const LogScrubber scrubber(userScrubTexts());
    LogReader reader(logEncodingOf(bytes), scrubber);
    const TakeText take = [&](std::string_view text) { stream.write(text); };
    int64_t left = size.QuadPart;
    for (; !bytes.empty() && left > 0 && bytesLeft > 0; bytes = readBlock(file, block)) {
        reader.feed(bytes, take);
        left -= static_cast<int64_t>(bytes.size());
        bytesLeft -= static_cast<int64_t>(bytes.size());
    }
    reader.finish(take);
    if (left > 0 && bytesLeft <= 0)
        PDX_LOG(logInfo, "buildPackage", "The error report is full: %lld bytes left out", left);
}

FileHandle openLog(const std::wstring& path) {
    const IoBound bound;
    return FileHandle(CreateFileW(path.c_str(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_SEQUENTIAL_SCAN | noImpersonation, nullptr));
}

void addFile(GzipStream& stream, const std::wstring& path, int64_t& bytesLeft) {
    const FileHandle file = openLog(path);
    // A link can lead to a pipe, which has no end and may never answer.
    if (!file || GetFileType(file.get()) != FILE_TYPE_DISK) {
        const DWORD error = file ? ERROR_BAD_FILE_TYPE : GetLastError();
        PDX_LOG(logInfo, "buildPackage", "Failed to open %ls for the error report: error=%08x", path, error);
        return;
    }
    const std::string name = toUtf8(path.substr(path.find_last_of(L"\\/") + 1));
    stream.write(sectionStart(name));
    addLog(stream, file.get(), bytesLeft);
    stream.write(sectionEnd(name));
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

void buildPackage(ErrorReport& report, const ReportFiles& files, int64_t mostLogBytes) {
    GzipStream stream;
    addSection(stream, "userData.json", userData(report));
    addSection(stream, "HardwareSurvey.json", machineSurvey(report.machineHash));
    for (const std::wstring& path : files)
        if (!path.empty()) addFile(stream, path, mostLogBytes);
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

void releaseReportPackage() { survey.clear(); }

}  // namespace pdx
