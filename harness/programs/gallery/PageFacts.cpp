#include "harness/programs/gallery/PageFacts.h"

#include <cmath>

#include "platform/Text.h"
#include "ui/toolkit/Painting.h"
#include "ui/toolkit/rules/CheckboxShape.h"

namespace pdx {
namespace {

using Json = nlohmann::json;

std::wstring nativeText(HWND window) {
    std::wstring text(4096, L'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

Json sizeJson(Size size) { return {{"width", size.width}, {"height", size.height}}; }

Json lineJson(const std::wstring& text, float x, float y, float width, float height) {
    return {{"text", toUtf8(text)}, {"x", x}, {"y", y}, {"width", width}, {"height", height}};
}

RectF measured(const Window& widget, const std::wstring& text) {
    Graphics graphics(widget.getHandle());
    ApplyQuality(graphics);
    const StringFormat format = CreateTextFormat();
    return graphics.measureString(text, widget.getFont(), {}, &format);
}

Size roundedUp(const RectF& text) {
    return {static_cast<int32_t>(std::ceil(text.width)), static_cast<int32_t>(std::ceil(text.height))};
}

/// What a widget shows, by its kind.
struct Shown {
    std::wstring text{};
    Json preferred = nullptr;
    Json lines = Json::array();
    bool scrolls = false;
    std::wstring missing{};
};

Shown shownBy(const HtmlStatic& label, GlyphCheck& glyphs) {
    Shown shown = {.text = label.GetText(), .preferred = sizeJson(label.GetPreferredSize())};
    const TrackState track = label.getScrollTrack().getState();
    shown.scrolls = track.maximum > track.minimum;
    for (const TextRun& run : label.getRuns()) {
        const FontRecord& record = run.style.logFont;
        const auto font = CreateFontByName(record.face, 24, record.weight > FW_NORMAL ? fontBold : fontRegular);
        for (const PlacedText& placed : run.placed) {
            shown.lines.push_back(lineJson(placed.text, placed.x, placed.y, placed.width, placed.height));
            shown.missing += glyphs.missing(placed.text, *font);
        }
    }
    return shown;
}

/// A text of one line with its left edge at x, or centred, in the middle of the control's height or at its top.
Shown shownLine(const Window& widget, std::optional<float> left, bool middle, GlyphCheck& glyphs) {
    Shown shown = {.text = widget.GetText()};
    if (shown.text.empty()) return shown;
    const Size client = widget.GetClientSize();
    const RectF text = measured(widget, shown.text);
    const float x = left.value_or((static_cast<float>(client.width) - text.width) / 2);
    const float y = middle ? (static_cast<float>(client.height) - text.height) / 2 : 0;
    shown.preferred = sizeJson(roundedUp(text));
    shown.lines.push_back(lineJson(shown.text, x, y, text.width, text.height));
    shown.missing = glyphs.missing(shown.text, *widget.getFont());
    return shown;
}

Shown shownBy(const Window* widget, GlyphCheck& glyphs) {
    if (!widget) return {};
    if (const auto* label = dynamic_cast<const HtmlStatic*>(widget)) return shownBy(*label, glyphs);
    if (dynamic_cast<const Static*>(widget)) return shownLine(*widget, 0.0f, false, glyphs);
    if (dynamic_cast<const LinkButton*>(widget)) return shownLine(*widget, std::nullopt, true, glyphs);
    if (const auto* button = dynamic_cast<const Button*>(widget)) {
        Shown shown = shownLine(*widget, std::nullopt, true, glyphs);
        if (!shown.text.empty()) shown.preferred = sizeJson(button->GetPreferredSize());
        return shown;
    }
    if (const auto* box = dynamic_cast<const Checkbox*>(widget)) {
        const int32_t left = checkboxLabelLeft(checkboxBox(widget->GetClientSize().height));
        Shown shown = shownLine(*widget, static_cast<float>(left), true, glyphs);
        if (!shown.text.empty()) shown.preferred = sizeJson(box->GetPreferredSize());
        return shown;
    }
    return {};
}

Json controlFacts(const GalleryDialog& dialog, int32_t id, const PublishedNames& names, GlyphCheck& glyphs) {
    const HWND window = dialog.GetItem(id);
    const Window* widget = dialog.widget(id);
    const Box box = boxOf(dialog.GetChildRectById(id));
    const Shown shown = shownBy(widget, glyphs);
    return {{"id", id},
            {"x", box.x},
            {"y", box.y},
            {"width", box.width},
            {"height", box.height},
            {"visible", IsWindowVisible(window) != FALSE},
            {"enabled", IsWindowEnabled(window) != FALSE},
            {"text", toUtf8(shown.text)},
            {"preferred", shown.preferred},
            {"tabstop", (GetWindowLongW(window, GWL_STYLE) & WS_TABSTOP) != 0},
            {"name", toUtf8(names.nameOf(window))},
            {"scrolls", shown.scrolls},
            {"lines", shown.lines},
            {"missing", toUtf8(shown.missing)}};
}

}  // namespace

std::wstring PublishedNames::nameOf(HWND window) const {
    const auto found = names.find(window);
    return found == names.end() ? nativeText(window) : found->second;
}

Json pageFacts(const GalleryDialog& dialog, const PublishedNames& names, GlyphCheck& glyphs) {
    Json controls = Json::array();
    for (const int32_t id : pageControls) controls.push_back(controlFacts(dialog, id, names, glyphs));
    return {{"kind", dialog.pageKind()}, {"client", sizeJson(dialog.GetClientSize())}, {"controls", controls}};
}

}  // namespace pdx
