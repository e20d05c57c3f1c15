#include "telemetry/MachineIdentity.h"

#include <windows.h>

#include <intrin.h>

#include <bit>

#include "platform/ComApartment.h"
#include "platform/Hash.h"
#include "platform/SystemFunction.h"
#include "platform/Wmi.h"
#include "telemetry/rules/Fingerprint.h"

namespace pdx {
namespace {

void askWmi(MachineFacts& facts, const ConnectWmi& connect) {
    ComApartment apartment;
    apartment.start();
    if (!apartment.usable()) return;
    const WmiConnection connection = connect(generalNamespace);
    if (!connection.services) return;
    for (const WmiFact& fact : wmiFacts)
        connection.services->forEachRow(std::wstring(L"Select * from ") + fact.className, [&](const WmiRow& row) {
            return takeFact(facts.*fact.field, fact.capacity, row(fact.property));
        });
}

/// Sets the serial number of the Windows volume; unchanged on failure. Looks both functions up by convention.
void askVolume(uint32_t& serial) {
    const auto getWindowsDirectory =
        systemFunction<decltype(&GetWindowsDirectoryW)>(L"kernel32.dll", "GetWindowsDirectoryW");
    const auto getVolumeInformation =
        systemFunction<decltype(&GetVolumeInformationW)>(L"kernel32.dll", "GetVolumeInformationW");
    wchar_t folder[MAX_PATH] = {};
    if (!getWindowsDirectory || !getVolumeInformation) return;
    const UINT length = getWindowsDirectory(folder, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return;
    const std::wstring path(folder, length);
    const std::wstring root = path.substr(0, path.find(L'\\') + 1);
    DWORD found = 0;
    if (getVolumeInformation(root.c_str(), nullptr, 0, &found, nullptr, nullptr, nullptr, 0)) serial = found;
}

CpuRegisters identify(uint32_t leaf) {
    int registers[4] = {};
    __cpuid(registers, static_cast<int>(leaf));
    return std::bit_cast<CpuRegisters>(registers);
}

}  // namespace

std::string getMachineHash() { return machineHashBy(connectWmi); }

std::string machineHashBy(const ConnectWmi& connect) {
    MachineFacts facts;
    askWmi(facts, connect);
    askVolume(facts.volumeSerial);
    facts.processor = processorText(identify);
    const std::string text = fingerprintText(facts);
    return hashString(L"SHA1", text.data(), text.size());
}

}  // namespace pdx
