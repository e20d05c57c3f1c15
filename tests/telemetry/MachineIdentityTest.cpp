#include "telemetry/MachineIdentity.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <intrin.h>

#include <bit>
#include <thread>

#include "platform/Hash.h"
#include "telemetry/rules/Fingerprint.h"
#include "tests/platform/ScriptedWmi.h"

namespace pdx {
namespace {

TEST(MachineHash, IsTheSameOnAllThreadsAndKeepsTheirApartment) {
    const std::string hash = getMachineHash();
    EXPECT_EQ(hash.size(), 40u);
    std::thread([&] {
        EXPECT_EQ(getMachineHash(), hash);
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK) << "no apartment was left";
        EXPECT_EQ(getMachineHash(), hash);
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_FALSE) << "its own apartment stayed";
        CoUninitialize();
        CoUninitialize();
    }).join();
}

TEST(MachineHash, IsTheHashOfTheFingerprintWithoutWmi) {
    DWORD serial = 0;
    ASSERT_TRUE(GetVolumeInformationW(L"C:\\", nullptr, 0, &serial, nullptr, nullptr, nullptr, 0));
    const std::string text =
        fmt::format("132241;132241;132241;132241;{:08X};132241;", serial) + processorText([](uint32_t leaf) {
            int registers[4] = {};
            __cpuid(registers, static_cast<int>(leaf));
            return std::bit_cast<CpuRegisters>(registers);
        });
    EXPECT_EQ(machineHashBy(scriptedWmi({})), hashString(L"SHA1", text.data(), text.size())) << text;
}

TEST(MachineHash, UsesTheFirstRowThatHasTheFact) {
    const auto hashWith = [](std::vector<ScriptedRow> rows) {
        const ScriptedAnswers answers = {{L"Select * from Win32_VideoController", std::move(rows)}};
        return machineHashBy(scriptedWmi({{L"ROOT\\CIMV2", answering(answers)}}));
    };
    const ScriptedRow first = {{L"PNPDeviceID", wmiText(L"PCI\\VEN_1")}};
    const ScriptedRow second = {{L"PNPDeviceID", wmiText(L"PCI\\VEN_2")}};
    EXPECT_EQ(hashWith({first, second}), hashWith({first}));
    EXPECT_EQ(hashWith({{{L"PNPDeviceID", wmiNumber(1)}}, {}, first}), hashWith({first}));
    EXPECT_NE(hashWith({second}), hashWith({first}));
}

}  // namespace
}  // namespace pdx
