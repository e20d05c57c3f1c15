// Measures the shipped library: bench.exe path\to\PalisadeBootstrapper.dll path\to\bench.json https://test.host
// path\to\signed files. Prints a table and writes it as JSON too. Exits with 1 when it cannot measure; a missed aim is
// only shown.
// bench.exe cold LIBRARY FILE [log|roots] makes one cold start and writes its moments to the file.
#include <windows.h>

#include <fmt/format.h>
#include <objbase.h>

#include <cstdio>
#include <exception>
#include <fstream>
#include <nlohmann/json.hpp>

#include "bench/Benchmarks.h"
#include "platform/Text.h"

namespace {

std::string aimText(const pdx::Measurement& measurement) {
    const auto& aim = measurement.aim;
    if (!aim) return "";
    return fmt::format("{} {:g}: {}", aim->atLeast ? "at least" : "at most", aim->bound,
                       measurement.aimMet() ? "met" : "MISSED");
}

void print(const pdx::Measurement& measurement) {
    const std::string value = fmt::format("{:.{}f}", measurement.value, measurement.value < 1000 ? 2 : 0);
    std::puts(fmt::format("{:<58} {:>12} {:<11} {}", measurement.meaning, value, measurement.unit, aimText(measurement))
                  .c_str());
    std::fflush(stdout);
}

nlohmann::json jsonOf(const pdx::Measurements& measurements) {
    auto json = nlohmann::json::object();
    for (const auto& measurement : measurements) {
        auto& entry = json[measurement.name];
        entry = {{"value", measurement.value}, {"unit", measurement.unit}, {"meaning", measurement.meaning}};
        if (!measurement.aim) continue;
        entry[measurement.aim->atLeast ? "at_least" : "at_most"] = measurement.aim->bound;
        entry["aim_met"] = measurement.aimMet();
    }
    return json;
}

pdx::Measurements measureAll(const std::filesystem::path& library, const std::string& host,
                             const std::filesystem::path& signedFiles, const std::filesystem::path& scratch) {
    pdx::Measurements all;
    const auto take = [&all](const pdx::Measurements& measurements) {
        for (const auto& measurement : measurements) print(measurement);
        all.insert(all.end(), measurements.begin(), measurements.end());
    };

    take(pdx::measureColdStart(library, scratch));
    take(pdx::measureStartup(library));
    take(pdx::measureWindow(library));
    take(pdx::measureLayout());
    take(pdx::measureMessages(library));
    take(pdx::measureLogging());
    take(pdx::measureTelemetry(host));
    take(pdx::measureRepair());
    take(pdx::measureElevatedFiles(signedFiles));
    take(pdx::measureReport(scratch));
    take(pdx::measureSize(library));
    return all;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    const bool coldStart = argc >= 4 && std::wstring_view(argv[1]) == L"cold";
    if (argc != 5 && !coldStart) {
        std::printf(
            "usage: bench.exe path\\to\\PalisadeBootstrapper.dll path\\to\\bench.json https://test.host "
            "path\\to\\signed files\n");
        return 1;
    }
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    try {
        if (coldStart) {
            pdx::writeColdStart(argv[2], argv[3], argc > 4 ? argv[4] : L"");
            return 0;
        }
        const std::filesystem::path result(argv[2]);
        const auto measurements = measureAll(argv[1], pdx::toUtf8(argv[3]), argv[4], result.wstring() + L".round");
        std::ofstream file{result};
        file << jsonOf(measurements).dump(2) << '\n';
        if (!file.flush()) throw std::runtime_error("the JSON file cannot be written");
    } catch (const std::exception& error) {
        std::printf("cannot measure: %s\n", error.what());
        return 1;
    }
    CoUninitialize();
    return 0;
}
