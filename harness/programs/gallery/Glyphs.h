// Which characters show as the box of a missing glyph.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "ui/toolkit/Graphics.h"

namespace pdx {

/// Draws characters as the dialog draws them, and compares with what it draws for a code point that no face has.
class GlyphCheck {
  public:
    /// The characters of a text that show as that box, or not at all, in the font's family and style; blanks aside.
    /// Throws std::runtime_error if the box itself is not visible.
    std::wstring missing(std::wstring_view text, const Font& font);

  private:
    using Pixels = std::vector<Color>;
    using Face = std::pair<std::wstring, int32_t>;

    [[nodiscard]] static Pixels drawn(wchar_t character, const Face& face);
    const Pixels& boxOfFace(const Face& face);

    std::map<Face, Pixels> boxes;
    std::map<std::pair<Face, wchar_t>, bool> known;
};

}  // namespace pdx
