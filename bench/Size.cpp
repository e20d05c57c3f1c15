#include <windows.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>

#include "bench/Benchmarks.h"

namespace pdx {

namespace {

constexpr double sizeAim = 2.0e6;

template <typename Record>
Record recordAt(const std::string& bytes, size_t offset) {
    if (offset + sizeof(Record) > bytes.size()) throw std::runtime_error("the library's file is cut off");
    Record record;
    std::memcpy(&record, bytes.data() + offset, sizeof(record));
    return record;
}

}  // namespace

Measurements measureSize(const std::filesystem::path& library) {
    std::ifstream file(library, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    const auto start = static_cast<size_t>(recordAt<IMAGE_DOS_HEADER>(bytes, 0).e_lfanew);
    const auto header = recordAt<IMAGE_NT_HEADERS32>(bytes, start).FileHeader;
    const size_t sections = start + offsetof(IMAGE_NT_HEADERS32, OptionalHeader) + header.SizeOfOptionalHeader;
    double code = 0, resources = 0;
    for (size_t i = 0; i < header.NumberOfSections; ++i) {
        const auto section = recordAt<IMAGE_SECTION_HEADER>(bytes, sections + i * sizeof(IMAGE_SECTION_HEADER));
        const auto* const name = reinterpret_cast<const char*>(section.Name);
        const bool isResources = std::string_view(name, strnlen(name, sizeof section.Name)) == ".rsrc";
        if (isResources) resources += section.SizeOfRawData;
        if (section.Characteristics & IMAGE_SCN_CNT_CODE) code += section.SizeOfRawData;
    }
    const auto whole = static_cast<double>(bytes.size());
    return {
        {"size", whole, "bytes", "the library's file"},
        {"size_without_resources", whole - resources, "bytes", "the library's file without resources", atMost(sizeAim)},
        {"size_code", code, "bytes", "the library's sections of code"},
        {"size_resources", resources, "bytes", "the library's resources"},
    };
}

}  // namespace pdx
