// The layout of a page, from the template's rectangles and the parts' preferred sizes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "ui/toolkit/rules/Geometry.h"

namespace pdx {

/// Pixels between the picture and the first line, between the lines of a prompt, under the buttons, between buttons.
inline constexpr int32_t gapUnderPicture = 24;
inline constexpr int32_t gapBetweenLines = 8;
inline constexpr int32_t gapUnderButtons = 32;
inline constexpr int32_t gapBetweenButtons = 12;
/// From the title's end to the body of the welcome page and of the older-client page.
inline constexpr int32_t gapToBody = 61;
inline constexpr int32_t gapToOptionsLink = 24;

/// The preferred sizes of the three buttons; nothing for a button without a text.
struct ButtonSizes {
    std::optional<Size> first;
    std::optional<Size> second;
    std::optional<Size> third;
};

struct ButtonRow {
    Box first;
    Box second;
    Box third;
};

/// The row of buttons, centred at the bottom of a client area. A button without a size keeps its given box.
ButtonRow layoutButtons(Size client, const ButtonSizes& sizes, const ButtonRow& given);

/// A picture of that size, centred in a target at (0, 0), with its proportions kept; whole-number arithmetic.
Box fitPicture(const Box& target, Size picture);

/// A text in two parts, cut at its first line feed; both empty if it has none.
std::pair<std::wstring, std::wstring> cutAtLineFeed(std::wstring_view text);

}  // namespace pdx
