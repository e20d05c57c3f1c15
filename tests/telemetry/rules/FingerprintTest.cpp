#include "telemetry/rules/Fingerprint.h"

#include <gtest/gtest.h>

#include <cstring>

namespace pdx {
namespace {

/// A processor whose brand, of up to 48 characters, lies in three of its leaves.
CpuIdentification processorWith(uint32_t highestLeaf, std::string brand) {
    brand.resize(48, '\0');
    return [=](uint32_t leaf) -> CpuRegisters {
        // "GenuineFakes" in the order B, D, C.
        if (leaf == 0) return {0x16, 0x756E6547, 0x73656B61, 0x46656E69};
        if (leaf == 1) return {0x000306A9, 1, 2, 0x0FEBFBFF};
        if (leaf == 0x80000000) return {highestLeaf, 0, 0, 0};
        CpuRegisters registers{};
        std::memcpy(&registers, brand.data() + 16 * (leaf - 0x80000002), sizeof registers);
        return registers;
    };
}

TEST(ProcessorText, JoinsVendorFeaturesAndBrand) {
    const std::tuple<uint32_t, std::string, std::string> rows[] = {
        {0x80000008, "Fake(R) CPU 9000 @ 1.00GHz", "Fake(R) CPU 9000 @ 1.00GHz;"},
        {0x80000004, "     Fake CPU  ", "Fake CPU  ;"},
        {0x80000004, std::string(48, ' '), ";"},
        {0x80000004, std::string(48, 'x'), std::string(48, 'x') + ";"},
        {0x80000003, "Fake", "132241;"},
    };
    for (const auto& [highestLeaf, brand, written] : rows)
        EXPECT_EQ(processorText(processorWith(highestLeaf, brand)), "GenuineFakes;0FEBFBFF000306A9;" + written);
}

TEST(FingerprintText, JoinsAllFieldsAndMarksWhatIsUnknown) {
    EXPECT_EQ(fingerprintText({}), "132241;132241;132241;132241;11335577;132241;");
    EXPECT_EQ(fingerprintText({.boardMaker = L"Board",
                               .boardSerial = L"",
                               .biosMaker = L"B I O S ",
                               .biosSerial = L"s-1",
                               .videoDevice = L"PCI\\VEN_1",
                               .volumeSerial = 0xABC,
                               .processor = "Fake;"}),
              "Board;;B I O S ;s-1;00000ABC;PCI\\VEN_1;Fake;");
}

TEST(FingerprintText, EncodesTheFirstFieldsUnitByUnitAndTheVideoDeviceByCharacters) {
    const wchar_t lead{0xD83D}, trail{0xDE00};
    const std::tuple<std::wstring, std::string, std::string> rows[] = {
        {{lead, trail}, "\xED\xA0\xBD\xED\xB8\x80", "\xF0\x9F\x98\x80"},
        {{lead, L'a'}, "\xED\xA0\xBD\x61", "\xEF\xBF\xBD\x61"},
    };
    for (const auto& [units, byUnits, byCharacters] : rows)
        EXPECT_EQ(fingerprintText({.biosSerial = units, .videoDevice = units, .processor = {}}),
                  "132241;132241;132241;" + byUnits + ";11335577;" + byCharacters + ";");
}

TEST(FingerprintText, CutsBetweenCharactersWithinItsSize) {
    MachineFacts facts;
    // 438 bytes up to the video device, whose characters then end at 1851 and, one byte on, at 1850.
    for (size_t more = 0; more < 3; ++more) {
        facts.boardMaker = std::wstring(128 + more, L'x');
        facts.videoDevice = std::wstring(1024, wchar_t{0x20AC});
        const std::string text = fingerprintText(facts);
        EXPECT_LE(text.size(), 1851u) << more;
        EXPECT_GT(text.size(), 1851u - 3) << more;
        EXPECT_TRUE(text.ends_with("\xE2\x82\xAC")) << more;
    }
}

TEST(TakeFact, StopsAtATextOrNullOnly) {
    const std::wstring full(64, L'x');
    const std::tuple<WmiValue, std::wstring, bool> rows[] = {
        {{WmiValue::Kind::text, L"  s-1 ", 0}, L"  s-1 ", false},
        {{WmiValue::Kind::text, full + L"y", 0}, full, false},
        {{WmiValue::Kind::null, L"", 0}, L"", false},
        {{WmiValue::Kind::number, L"", 7}, unknownFact, true},
        {{}, unknownFact, true},
    };
    for (const auto& [value, kept, goesOn] : rows) {
        std::wstring field = unknownFact;
        EXPECT_EQ(takeFact(field, 64, value), goesOn);
        EXPECT_EQ(field, kept);
    }
}

}  // namespace
}  // namespace pdx
