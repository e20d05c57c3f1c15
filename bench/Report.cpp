#include <windows.h>
#include <zlib.h>

#include <atomic>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "bench/Benchmarks.h"
#include "bench/PackageLog.h"
#include "bench/ProcessMemory.h"
#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/Text.h"
#include "reporting/GzipStream.h"
#include "reporting/ReportPackage.h"

namespace pdx {

namespace {

constexpr int reportRounds = 5;
constexpr size_t usualSize = 16 << 20;  // bytes of UTF-8
constexpr size_t largeSize = 500 << 20;
constexpr size_t logLines = 40000;

/// Lines like those of a Windows Installer log; one in sixteen has a path in this user's profile.
std::string logText() {
    const std::wstring profile = L" " + getProfilePath() + L"\\AppData\\Local\\Temp\\";
    std::wstring text;
    size_t count = 0;
    for (const PackageLogLine& line : makePackageLog(logLines))
        text += line.text + (count++ % 16 == 0 ? profile : L"") + L"\r\n";
    return toUtf8(text);
}

/// A log file of that size; the destructor deletes it.
class LogFile {
  public:
    LogFile(std::filesystem::path place, const std::string& text, size_t size) : path(std::move(place)) {
        std::ofstream file(path, std::ios::binary);
        for (size_t left = size; left > 0;) {
            const size_t piece = std::min(left, text.size());
            file.write(text.data(), static_cast<std::streamsize>(piece));
            left -= piece;
        }
        if (!file.flush()) throw std::runtime_error("the log to be packed cannot be written");
    }
    ~LogFile() {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    ErrorReport packed() const {
        ErrorReport report;
        report.machineHash = "0";
        buildPackage(report, {path.wstring()});
        return report;
    }

  private:
    std::filesystem::path path;
};

/// Seconds that zlib alone takes to pack the text, repeated up to that size.
double packingAlone(const std::string& scrubbed, size_t size) {
    std::string packed(size / 2, '\0');
    return secondsOf([&] {
        z_stream stream{};
        deflateInit2(&stream, 9, Z_DEFLATED, 31, 8, Z_DEFAULT_STRATEGY);
        stream.next_out = reinterpret_cast<Bytef*>(packed.data());
        stream.avail_out = static_cast<uInt>(packed.size());
        for (size_t done = 0; done < size; done += stream.total_in - done) {
            stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(scrubbed.data()));
            stream.avail_in = static_cast<uInt>(std::min(scrubbed.size(), size - done));
            if (deflate(&stream, Z_NO_FLUSH) != Z_OK) throw std::runtime_error("zlib cannot pack the text");
        }
        deflate(&stream, Z_FINISH);
        deflateEnd(&stream);
    });
}

/// The growth of the process's working set, in bytes, at its highest during the work.
template <typename Work>
size_t peakOf(Work work) {
    const size_t before = workingSetNow();
    std::atomic<bool> ended = false;
    size_t peak = before;
    std::thread watch([&] {
        for (; !ended; Sleep(5)) peak = std::max(peak, workingSetNow());
    });
    work();
    ended = true;
    watch.join();
    return peak - before;
}

}  // namespace

Measurements measureReport(const std::filesystem::path& scratch) {
    const std::string text = logText();
    // Before the other measurements, whose freed memory it could reuse.
    size_t package = 0, peak = 0;
    {
        const LogFile large(scratch, text, largeSize);
        peak = peakOf([&] { package = large.packed().package.size(); });
    }
    const std::string scrubbed = toUtf8(scrubProfilePath(toWide(text)));
    const std::wstring wide = toWide(text);
    const std::string wideBytes = "\xFF\xFE" + std::string(reinterpret_cast<const char*>(wide.data()), wide.size() * 2);
    const auto wideSize =
        static_cast<size_t>(1.0 * usualSize / static_cast<double>(text.size()) * static_cast<double>(wideBytes.size()));
    const std::filesystem::path widePlace = scratch.wstring() + L".utf16";
    const LogFile log(scratch, text, usualSize);
    const LogFile wideLog(widePlace, wideBytes, wideSize);
    std::vector<double> speeds, ratios, wideRatios;
    for (int round = 0; round < reportRounds; ++round) {  // in turn, so that other load affects both alike
        const double alone = packingAlone(scrubbed, usualSize);
        const double seconds = secondsOf([&] { log.packed(); });
        speeds.push_back(mebibytes(usualSize) / seconds);
        ratios.push_back(alone / seconds);
        wideRatios.push_back(alone / secondsOf([&] { wideLog.packed(); }));
    }
    return {
        {"report_package", median(speeds), "MB/s", "logs into an error report's package"},
        {"report_package_ratio", median(ratios), "x", "packing to zlib's level 9 alone", atLeast(0.9)},
        {"report_package_utf16_ratio", median(wideRatios), "x", "packing UTF-16 logs, counted as UTF-8, to zlib alone"},
        {"report_memory", mebibytes(peak) - mebibytes(package), "MB", "memory for one log of 500 MB beyond the package",
         atMost(8)},
        {"report_size", mebibytes(package), "MB", "the error report's package"},
    };
}

}  // namespace pdx
