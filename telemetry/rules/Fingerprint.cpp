#include "telemetry/rules/Fingerprint.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "platform/rules/Utf8.h"

namespace pdx {
namespace {

constexpr size_t fingerprintCapacity = 1851;

/// Encodes each unit separately, also the halves of a surrogate pair.
void appendUnits(std::string& text, std::wstring_view units) {
    for (const wchar_t unit : units) appendUtf8(text, static_cast<uint16_t>(unit));
}

/// Cuts at the capacity or up to three bytes before it, between two sequences.
void cutSequences(std::string& text, size_t capacity) {
    if (text.size() <= capacity) return;
    size_t end = capacity;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    text.resize(end);
}

void appendRegister(std::string& text, uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) text += static_cast<char>(value >> shift);
}

/// The part before the first zero.
std::string_view cutAtZero(std::string_view text) { return text.substr(0, text.find('\0')); }

std::string brandText(const CpuIdentification& cpuid) {
    constexpr uint32_t extendedLeaves = 0x80000000;
    constexpr uint32_t firstBrandLeaf = 0x80000002;
    constexpr uint32_t lastBrandLeaf = 0x80000004;
    if (cpuid(extendedLeaves).a < lastBrandLeaf) return toUtf8(unknownFact);
    std::string brand;
    for (uint32_t leaf = firstBrandLeaf; leaf <= lastBrandLeaf; ++leaf) {
        const CpuRegisters registers = cpuid(leaf);
        for (const uint32_t value : {registers.a, registers.b, registers.c, registers.d}) appendRegister(brand, value);
    }
    std::string_view shown = cutAtZero(brand);
    shown.remove_prefix(std::min(shown.find_first_not_of(' '), shown.size()));
    return std::string(shown);
}

}  // namespace

bool takeFact(std::wstring& field, size_t capacity, const WmiValue& value) {
    switch (value.kind) {
        case WmiValue::Kind::text:
            field = value.text.substr(0, capacity);
            return false;
        case WmiValue::Kind::null:
            field.clear();
            return false;
        default:
            return true;
    }
}

std::string processorText(const CpuIdentification& cpuid) {
    const CpuRegisters vendorLeaf = cpuid(0);
    std::string vendor;
    // The order of the vendor's text in the registers.
    for (const uint32_t value : {vendorLeaf.b, vendorLeaf.d, vendorLeaf.c}) appendRegister(vendor, value);
    const CpuRegisters features = cpuid(1);
    return fmt::format("{};{:08X}{:08X};{};", cutAtZero(vendor), features.d, features.a, brandText(cpuid));
}

std::string fingerprintText(const MachineFacts& facts) {
    std::string text;
    for (const auto field :
         {&MachineFacts::boardMaker, &MachineFacts::boardSerial, &MachineFacts::biosMaker, &MachineFacts::biosSerial}) {
        appendUnits(text, facts.*field);
        text += ';';
    }
    text += fmt::format("{:08X};", facts.volumeSerial);
    text += toUtf8(facts.videoDevice);
    text += ';';
    text += facts.processor;
    cutSequences(text, fingerprintCapacity);
    return text;
}

}  // namespace pdx
