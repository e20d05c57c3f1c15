#include "ui/toolkit/Fonts.h"

#include <gtest/gtest.h>

#include "ui/toolkit/NativeHandles.h"

namespace pdx {
namespace {

std::wstring fallbackName() { return CreateFontByName(L"no such face", 10, fontRegular)->getFamilyName(); }

TEST(Fonts, AnUnknownFaceBecomesSansSerifWithoutAFailure) {
    for (const float size : {20.0f, -20.0f}) {
        const auto font = CreateFontByName(L"no such face", size, fontBold | fontStrikeout);
        ASSERT_NE(font->native(), nullptr);
        EXPECT_EQ(font->lastStatus(), Gdiplus::Ok);
        EXPECT_EQ(font->getSize(), 20.0f);
        EXPECT_EQ(font->GetStyle(), fontBold | fontStrikeout);
        EXPECT_EQ(font->getUnit(), Gdiplus::UnitPixel);
    }
    EXPECT_FALSE(fallbackName().empty());
}

TEST(Fonts, ReadSizeAndStyleFromTheNativeRecord) {
    for (const LONG weight : {400, 401}) {
        LOGFONTW record{};
        record.lfHeight = -16;
        record.lfWeight = weight;
        record.lfItalic = record.lfUnderline = record.lfStrikeOut = 1;
        const auto font = CreateFontFromLogFont(record);
        EXPECT_EQ(font->getSize(), 16);
        EXPECT_EQ(font->GetStyle(),
                  fontItalic | fontUnderline | fontStrikeout | (weight > 400 ? fontBold : fontRegular));
    }
}

TEST(Fonts, AreNullForAHandleThatIsNotAFont) {
    EXPECT_EQ(CreateFontFromHandle(nullptr), nullptr);
    EXPECT_EQ(CreateFontFromHandle(static_cast<HFONT>(GetStockObject(WHITE_BRUSH))), nullptr);
    EXPECT_NE(CreateFontFromHandle(static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT))), nullptr);
    EXPECT_EQ(CloneFontWithStyle(nullptr, fontBold), nullptr);
}

TEST(Fonts, BothPrivateFacesAreLoaded) {
    LoadPrivateFonts();
    LoadPrivateFonts();
    for (const wchar_t* face : {textFace, pathFace})
        for (const int32_t style : std::initializer_list<int32_t>{fontRegular, fontBold}) {
            const auto font = CreateFontByName(face, 14, style);
            EXPECT_EQ(font->getFamilyName(), face);
            EXPECT_EQ(font->GetStyle(), style);
            const auto record = font->getLogFont();
            ASSERT_TRUE(record);
            EXPECT_EQ(record->lfFaceName, std::wstring(face));
            const NativeFont native(CreateFontIndirectW(&*record));
            EXPECT_EQ(CreateFontFromHandle(native.get())->getFamilyName(), face) << "through a native font";
        }
    // Both are installed everywhere, and at most one of them is the sans-serif face.
    for (const wchar_t* installed : {L"Marlett", L"Symbol"})
        EXPECT_EQ(CreateFontByName(installed, 16, fontRegular)->getFamilyName(), fallbackName())
            << "installed faces are ignored";
}

}  // namespace
}  // namespace pdx
