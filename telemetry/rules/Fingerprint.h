// The text of hardware facts whose hash identifies a machine.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "platform/rules/WmiValue.h"

namespace pdx {

/// Replaces a missing fact.
inline constexpr const wchar_t* unknownFact = L"132241";

struct MachineFacts {
    std::wstring boardMaker = unknownFact;
    std::wstring boardSerial = unknownFact;
    std::wstring biosMaker = unknownFact;
    std::wstring biosSerial = unknownFact;
    std::wstring videoDevice = unknownFact;
    uint32_t volumeSerial = 0x11335577;
    std::string processor;  ///< from processorText
};

/// A fact that WMI provides.
struct WmiFact {
    const wchar_t* className;
    const wchar_t* property;
    std::wstring MachineFacts::*field;
    size_t capacity;  ///< in UTF-16 units
};

/// In the order of the queries, which differs from the order of the text.
inline constexpr std::array<WmiFact, 5> wmiFacts = {{
    {L"Win32_BaseBoard", L"SerialNumber", &MachineFacts::boardSerial, 128},
    {L"Win32_BIOS", L"SerialNumber", &MachineFacts::biosSerial, 64},
    {L"Win32_BaseBoard", L"Manufacturer", &MachineFacts::boardMaker, 128},
    {L"Win32_BIOS", L"Manufacturer", &MachineFacts::biosMaker, 128},
    {L"Win32_VideoController", L"PNPDeviceId", &MachineFacts::videoDevice, 1024},
}};

/// Stores one row's property in the field: a text is cut to the capacity, null becomes the empty text, other types are
/// ignored. Returns whether the next row is needed.
bool takeFact(std::wstring& field, size_t capacity, const WmiValue& value);

/// The registers that the processor's identification instruction fills for a leaf.
struct CpuRegisters {
    uint32_t a, b, c, d;
};
using CpuIdentification = std::function<CpuRegisters(uint32_t leaf)>;

/// Vendor, features with signature, and brand without leading blanks, each followed by ";".
std::string processorText(const CpuIdentification& cpuid);

/// The facts, each followed by ";", 1851 bytes at most. The first four fields are encoded unit by unit, so a surrogate
/// pair in them takes two sequences of three bytes. The text is hashed and used nowhere else.
std::string fingerprintText(const MachineFacts& facts);

}  // namespace pdx
