// Reading, layout and drawing of marked-up text.
#include "ui/toolkit/HtmlStatic.h"

#include <commctrl.h>

#include <map>
#include <optional>

#include "platform/Log.h"
#include "platform/Text.h"
#include "platform/UncaughtExceptions.h"
#include "ui/toolkit/Painting.h"
#include "ui/toolkit/rules/GumboTree.h"
#include "ui/toolkit/rules/Markup.h"

namespace pdx {
namespace {

constexpr int32_t trackWidth = 8;
constexpr int32_t trackLineSize = 20;

/// The font of a window, as the start of a style; nothing when the window has none.
std::optional<FontRecord> fontRecordOf(HWND window) {
    const auto font = reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
    LOGFONTW native{};
    if (GetObjectW(font, sizeof native, &native) != sizeof native) return std::nullopt;
    return FontRecord{.height = native.lfHeight < 0 ? -native.lfHeight : native.lfHeight,
                      .weight = native.lfWeight,
                      .italic = native.lfItalic != 0,
                      .underline = native.lfUnderline != 0,
                      .strikeout = native.lfStrikeOut != 0,
                      .quality = ANTIALIASED_QUALITY,
                      .face = native.lfFaceName};
}

std::unique_ptr<Font> createFont(const FontRecord& record) {
    return CreateFontByName(record.face, static_cast<float>(record.height),
                            fontStyle(record.weight, record.italic, record.underline, record.strikeout));
}

LineAlignment alignmentOf(DWORD style) {
    if (style & SS_CENTER) return LineAlignment::centre;
    return style & SS_RIGHT ? LineAlignment::right : LineAlignment::left;
}

/// Whether any of a text can show in a window of that height; strokes may exceed the measured height.
bool isInView(const PlacedText& text, int32_t position, int32_t windowHeight) {
    const float top = text.y - static_cast<float>(position);
    return top + 2 * text.height >= 0 && top - text.height <= static_cast<float>(windowHeight);
}

}  // namespace

HtmlStatic::HtmlStatic(HWND window) : Static(window) {
    SetStyle(GetStyle() | WS_CLIPCHILDREN);
    const Size client = GetClientSize();
    scrollTrack->Create({.style = WS_CHILD | TBS_VERT | TBS_NOTICKS,
                         .x = client.width - trackWidth,
                         .y = 0,
                         .width = trackWidth,
                         .height = client.height,
                         .parent = hwnd});
}

MessageResult HtmlStatic::OnSetText(LPARAM markup) {
    storeText(markup);
    replaceRuns({});
    // Running out of memory here is meant to end in the crash handling, so receiveMessage must not catch it.
    crashOnException([this] { readMarkup(); });
    const Size client = GetClientSize();
    Layout(client.width, client.height);
    // The first link is the first that the keyboard reaches.
    const bool canHaveFocus = FocusNextLink() || scrollTrack->IsVisible();
    SetStyle(canHaveFocus ? GetStyle() | WS_TABSTOP : GetStyle() & ~static_cast<DWORD>(WS_TABSTOP));
    return handled(1);
}

void HtmlStatic::readMarkup() {
    const GumboTree tree(toUtf8(text));
    if (tree.wasCut())
        PDX_LOG(logWarning, "HtmlStatic::OnSetText",
                "Markup is too long or has too many tags, its end is left out: length=%u",
                static_cast<uint32_t>(text.size()));
    SetAccessibleName(plainText(tree));
    if (const auto record = fontRecordOf(hwnd))
        replaceRuns(walkMarkup(tree, {.logFont = *record, .lineHeight = defaultLineHeight}));
}

void HtmlStatic::replaceRuns(std::vector<TextRun> newRuns) {
    runs = std::move(newRuns);
    // The pressed run is gone, so its press must end here.
    if (pressedRun && GetCapture() == hwnd) ReleaseCapture();
    hoveredRun = nullptr;
    pressedRun = nullptr;
    focusedRun = runs.size();
}

FontRecord HtmlStatic::GetRunFont(const TextRun& run) const {
    FontRecord record = run.style.logFont;
    const bool focused = HasFocus() && focusedRun < runs.size() && &run == &runs[focusedRun];
    if (&run == hoveredRun || focused) record.underline = true;
    return record;
}

bool HtmlStatic::placeText(int32_t width, float heightLimit) {
    Graphics graphics(hwnd);
    ApplyQuality(graphics);
    const StringFormat format = CreateTextFormat();
    const float dpi = graphics.getDpiY();
    // Even a text of thousands of runs has few fonts; the limit is for a text that has thousands.
    constexpr size_t mostFonts = 64;
    std::map<FontRecord, RunFont> fonts;
    const auto makeFont = [&](const FontRecord& record) {
        const std::shared_ptr<Font> face = createFont(record);
        const auto measure = [&graphics, &format, face](std::wstring_view words) {
            const RectF measured = graphics.measureString(words, face.get(), {}, &format);
            return Extent{measured.width, measured.height};
        };
        return RunFont{measure, face->getHeight(dpi), measure(L" ").width};
    };
    const auto fontOf = [&](const TextRun& run) {
        const FontRecord record = GetRunFont(run);
        if (const auto known = fonts.find(record); known != fonts.end()) return known->second;
        if (fonts.size() == mostFonts) fonts.clear();
        return fonts.emplace(record, makeFont(record)).first->second;
    };
    return placeRuns(runs, static_cast<float>(width), alignmentOf(GetStyle()), fontOf, heightLimit);
}

void HtmlStatic::Layout(int32_t width, int32_t height) {
    if (width != GetClientSize().width) {
        placeText(width);
        return;
    }
    scrollTrack->home();
    const bool fits = placeText(width, static_cast<float>(height));
    if (!fits) placeText(width - scrollTrack->GetClientSize().width);
    scrollTrack->SetRange(0, fits ? 0 : scrollRange(boundsOf(runs).height, height));
    // A track left over from the previous text would make this one a tab stop.
    if (fits) return scrollTrack->Show(SW_HIDE);
    scrollTrack->SetLineSize(trackLineSize);
    scrollTrack->SetPageSize(height);
}

MessageResult HtmlStatic::OnSize(int32_t, int32_t) {
    // Any program may send this message to an elevated window, with any size.
    const auto [width, height] = GetClientSize();
    const int32_t ownWidth = scrollTrack->GetClientSize().width;
    scrollTrack->SetPosition({width - ownWidth, 0, width, height}, SWP_NOOWNERZORDER | SWP_NOACTIVATE | SWP_NOZORDER);
    Layout(width, height);
    return repaint(handled());
}

MessageResult HtmlStatic::Draw(Graphics& graphics) {
    const TrackState track = scrollTrack->getState();
    scrollTrack->Show(track.maximum > track.minimum ? SW_SHOW : SW_HIDE);
    const int32_t windowHeight = GetClientSize().height;
    const StringFormat format = CreateTextFormat();
    for (const TextRun& run : runs) {
        // Fonts are expensive, and most of a long text is out of view.
        std::unique_ptr<Font> face;
        std::optional<Brush> brush;
        for (const PlacedText& placed : run.placed) {
            if (!isInView(placed, track.position, windowHeight)) continue;
            if (!face) face = createFont(GetRunFont(run));
            if (!brush) brush.emplace(run.style.color);
            const float y = placed.y - static_cast<float>(track.position);
            graphics.drawString(placed.text, face.get(), {placed.x, y, 0, 0}, &format, &*brush);
            drawFontLines(graphics, *face, {placed.x, y, placed.width, placed.height}, *brush);
        }
    }
    return handled();
}

}  // namespace pdx
