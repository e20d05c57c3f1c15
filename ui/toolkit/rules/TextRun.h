// A marked-up text for layout and drawing: runs of words of one style.
#pragma once

#include <compare>
#include <string>
#include <vector>

#include "ui/toolkit/rules/Geometry.h"
#include "ui/toolkit/rules/LineHeight.h"
#include "ui/toolkit/rules/Palette.h"

namespace pdx {

/// The fields of the platform's font record that a style can change.
struct FontRecord {
    int32_t height = 0;  ///< pixels
    int32_t weight = 400;
    bool italic = false;
    bool underline = false;
    bool strikeout = false;
    uint8_t quality = 0;
    std::wstring face{};
    // NOLINTNEXTLINE(modernize-use-nullptr): clang-tidy 14 reads the generated comparison with 0
    auto operator<=>(const FontRecord&) const = default;
};

struct TextStyle {
    FontRecord logFont{};
    Color color = palette::defaultText;
    std::wstring href{};  ///< empty when the run is not a link
    LineHeight lineHeight{};
    bool operator==(const TextStyle&) const = default;
};

/// Several words of a run on one line, joined by single blanks.
struct PlacedText {
    std::wstring text;
    float x = 0;
    float y = 0;
    float width = 0;
    float height = 0;
    bool operator==(const PlacedText&) const = default;
};

/// The word that means a line break.
inline constexpr wchar_t lineFeed[] = L"\n";

struct TextRun {
    std::vector<std::wstring> words;
    TextStyle style;
    std::vector<PlacedText> placed{};  ///< the result of layout
    [[nodiscard]] bool isLink() const { return !style.href.empty(); }
};

}  // namespace pdx
