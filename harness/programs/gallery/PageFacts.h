// What can be told of a page besides its picture.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "harness/programs/gallery/GalleryDialog.h"
#include "harness/programs/gallery/Glyphs.h"
#include "ui/toolkit/AccessibleName.h"

namespace pdx {

/// Keeps the name that was published last for each window, in place of the platform's service: Wine's takes none.
class PublishedNames : public AccessibleNames {
  public:
    void publish(HWND window, const std::wstring& name) override { names[window] = name; }
    /// Where none was published the platform takes the text that the native window holds.
    [[nodiscard]] std::wstring nameOf(HWND window) const;

  private:
    std::map<HWND, std::wstring> names;
};

/// The page on show: its kind, the client area's size, and of each control place, state, text, the room that its text
/// needs ("preferred", null where there is no text to ask for), the lines of text as they are drawn in the control,
/// the characters that no face has a glyph for, and the accessible name. All lengths in pixels.
nlohmann::json pageFacts(const GalleryDialog& dialog, const PublishedNames& names, GlyphCheck& glyphs);

}  // namespace pdx
