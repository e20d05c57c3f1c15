#include "telemetry/rules/Fingerprint.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <vector>

namespace pdx {
namespace {

/// A processor that answers as its leaves say.
struct FakeProcessor {
    std::map<uint32_t, CpuRegisters> leaves;

    /// Lays a text of up to 48 characters into the three leaves of the brand.
    void setBrand(std::string brand) {
        brand.resize(48, '\0');
        for (uint32_t i = 0; i < 3; ++i) std::memcpy(&leaves[0x80000002 + i], brand.data() + 16 * i, 16);
    }
    CpuIdentification identification() {
        return [this](uint32_t leaf) { return leaves[leaf]; };
    }
};

FakeProcessor ordinaryProcessor() {
    FakeProcessor processor;
    // "GenuineFakes" in the order B, D, C.
    processor.leaves[0] = {0x16, 0x756E6547, 0x73656B61, 0x46656E69};
    processor.leaves[1] = {0x000306A9, 1, 2, 0xBFEBFBFF};
    processor.leaves[0x80000000] = {0x80000008, 0, 0, 0};
    processor.setBrand("Fake(R) CPU 9000 @ 1.00GHz");
    return processor;
}

TEST(ProcessorText, JoinsVendorFeaturesAndBrand) {
    struct Row {
        const char* name;
        uint32_t highestLeaf;
        std::string brand;
        std::string expected;
    };
    const std::string head = "GenuineFakes;BFEBFBFF000306A9;";
    const Row rows[] = {
        {"ordinary", 0x80000008, "Fake(R) CPU 9000 @ 1.00GHz", head + "Fake(R) CPU 9000 @ 1.00GHz;"},
        {"leading blanks go, others stay", 0x80000004, "     Fake CPU  ", head + "Fake CPU  ;"},
        {"nothing but blanks", 0x80000004, std::string(48, ' '), head + ";"},
        {"48 characters without a zero", 0x80000004, std::string(48, 'x'), head + std::string(48, 'x') + ";"},
        {"no brand", 0x80000003, "Fake", head + "132241;"},
    };
    for (const Row& row : rows) {
        FakeProcessor processor = ordinaryProcessor();
        processor.leaves[0x80000000].a = row.highestLeaf;
        processor.setBrand(row.brand);
        EXPECT_EQ(processorText(processor.identification()), row.expected) << row.name;
    }
    FakeProcessor small = ordinaryProcessor();
    small.leaves[1] = {0x5A, 0, 0, 0x0F};
    EXPECT_TRUE(processorText(small.identification()).starts_with("GenuineFakes;0000000F0000005A;"))
        << "eight digits each";
}

TEST(FingerprintText, JoinsAllFieldsAndMarksWhatIsUnknown) {
    MachineFacts unknown;
    unknown.processor = processorText(ordinaryProcessor().identification());
    EXPECT_EQ(fingerprintText(unknown),
              "132241;132241;132241;132241;11335577;132241;"
              "GenuineFakes;BFEBFBFF000306A9;Fake(R) CPU 9000 @ 1.00GHz;");

    MachineFacts known = unknown;
    known.boardMaker = L"Board";
    known.boardSerial = L"";
    known.biosMaker = L"B I O S ";
    known.biosSerial = L"s-1";
    known.volumeSerial = 0xABC;
    known.videoDevice = L"PCI\\VEN_1";
    EXPECT_EQ(fingerprintText(known),
              "Board;;B I O S ;s-1;00000ABC;PCI\\VEN_1;"
              "GenuineFakes;BFEBFBFF000306A9;Fake(R) CPU 9000 @ 1.00GHz;");
}

TEST(FingerprintText, EncodesTheFirstFieldsUnitByUnitAndTheVideoDeviceByCharacters) {
    struct Row {
        const char* name;
        std::wstring units;
        std::string byUnits;
        std::string byCharacters;
    };
    const std::wstring lead(1, wchar_t{0xD83D});
    const std::wstring trail(1, wchar_t{0xDE00});
    const Row rows[] = {
        {"pair", lead + trail, "\xED\xA0\xBD\xED\xB8\x80", "\xF0\x9F\x98\x80"},
        {"lone lead", lead + L"a", "\xED\xA0\xBD\x61", "\xEF\xBF\xBD\x61"},
    };
    for (const Row& row : rows) {
        MachineFacts facts;
        facts.biosSerial = row.units;
        facts.videoDevice = row.units;
        EXPECT_EQ(fingerprintText(facts), "132241;132241;132241;" + row.byUnits + ";11335577;" + row.byCharacters + ";")
            << row.name;
    }
}

TEST(FingerprintText, StaysWithinItsRoomWithoutTearingACharacter) {
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

TEST(TakeFact, StopsAtTextAndNullAndGoesOnOtherwise) {
    struct Row {
        const char* name;
        WmiValue value;
        std::wstring field;
        bool goOn;
    };
    const std::wstring full(64, L'x');
    const Row rows[] = {
        {"text", {WmiValue::Kind::text, L"  s-1 ", 0}, L"  s-1 ", false},
        {"empty text", {WmiValue::Kind::text, L"", 0}, L"", false},
        {"text that just fits", {WmiValue::Kind::text, full, 0}, full, false},
        {"overlong text", {WmiValue::Kind::text, full + L"y", 0}, full, false},
        {"null", {WmiValue::Kind::null, L"", 0}, L"", false},
        {"number", {WmiValue::Kind::number, L"", 7}, unknownFact, true},
        {"nothing", {}, unknownFact, true},
    };
    for (const Row& row : rows) {
        std::wstring field = unknownFact;
        EXPECT_EQ(takeFact(field, 64, row.value), row.goOn) << row.name;
        EXPECT_EQ(field, row.field) << row.name;
    }
}

}  // namespace
}  // namespace pdx
