// The facts of a page, besides its picture.
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

/// The kind of the page that shows, the client area's size, and the controls: place, state, text, and accessible name.
/// Of a text also the space that it needs ("preferred", else null), its lines as they are drawn in the control, and the
/// characters that no face has a glyph for. All lengths in pixels.
nlohmann::json pageFacts(const GalleryDialog& dialog, const PublishedNames& names, GlyphCheck& glyphs);

}  // namespace pdx
