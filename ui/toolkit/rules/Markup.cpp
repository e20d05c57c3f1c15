#include "ui/toolkit/rules/Markup.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cwctype>
#include <optional>
#include <utility>

#include "platform/rules/AsciiCase.h"

namespace pdx {
namespace {

using Node = GumboTree::Node;

constexpr int32_t boldWeight = 700;
constexpr size_t longestFace = 31;  // what the platform's font record holds

bool isBlank(wchar_t character) { return std::iswspace(static_cast<wint_t>(character)) != 0; }

/// The text for the number parsers, which know ASCII only.
std::string asciiOf(std::wstring_view text) {
    std::string ascii;
    for (const wchar_t character : text) ascii += character < 128 ? static_cast<char>(character) : '?';
    return ascii;
}

/// The decimal number at the start of a text, after blanks and a plus sign; 0 for none.
float numberAtStart(std::wstring_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    if (!text.empty() && text.front() == L'+') text.remove_prefix(1);
    const std::string digits = asciiOf(text);
    float number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return std::isfinite(number) ? number : 0;
}

/// The value of "#" with exactly that many characters after it, read as hexadecimal up to the first other character.
/// Nothing for another length.
std::optional<uint32_t> hexadecimal(std::wstring_view text, size_t digits) {
    if (text.size() != digits + 1 || text.front() != L'#') return std::nullopt;
    const std::string ascii = asciiOf(text.substr(1));
    uint32_t number = 0;
    std::from_chars(ascii.data(), ascii.data() + ascii.size(), number, 16);
    return number;
}

void applyLink(const GumboTree& tree, Node element, TextStyle& style) {
    style.href = tree.attribute(element, "HREF");
    style.color = palette::link;
}

void applyFont(const GumboTree& tree, Node element, TextStyle& style) {
    if (const auto color = hexadecimal(tree.attribute(element, "COLOR"), 6)) {
        style.color = WithAlpha(*color, 0xFF);
    } else if (const auto argb = hexadecimal(tree.attribute(element, "ARGB"), 8)) {
        style.color = *argb;
    }
    if (const std::wstring face = tree.attribute(element, "FACE"); !face.empty())
        style.logFont.face = face.substr(0, longestFace);
    // SIZE is in pixels here, not one of HTML's seven sizes.
    if (const std::wstring size = tree.attribute(element, "SIZE"); !size.empty())
        style.logFont.height = wholePixels(numberAtStart(size));
    if (const std::wstring height = tree.attribute(element, "LINE-HEIGHT"); !height.empty())
        style.lineHeight = parseLineHeight(height);
}

using Effect = void (*)(const GumboTree&, Node, TextStyle&);

/// The elements that change the style of their content.
constexpr struct {
    std::wstring_view name;
    Effect apply;
} effects[] = {
    {L"A", applyLink},
    {L"B", [](const GumboTree&, Node, TextStyle& style) { style.logFont.weight = boldWeight; }},
    {L"I", [](const GumboTree&, Node, TextStyle& style) { style.logFont.italic = true; }},
    {L"STRIKE", [](const GumboTree&, Node, TextStyle& style) { style.logFont.strikeout = true; }},
    {L"U", [](const GumboTree&, Node, TextStyle& style) { style.logFont.underline = true; }},
    {L"FONT", applyFont},
};

/// The block elements: each begins and ends a line.
constexpr std::wstring_view blocks[] = {L"P",  L"DIV", L"CENTER", L"BLOCKQUOTE", L"PRE",   L"UL", L"OL",
                                        L"LI", L"DL",  L"DT",     L"DD",         L"TABLE", L"TR", L"HR",
                                        L"H1", L"H2",  L"H3",     L"H4",         L"H5",    L"H6"};

/// Calls enter for each node below root in the order of the text, and leave after all nodes below an element. Without
/// recursion, because the text decides the depth and a thread's stack is limited.
template <typename Enter, typename Leave>
void traverse(const GumboTree& tree, Node root, Enter enter, Leave leave) {
    struct Level {
        Node node;
        size_t next;
    };
    std::vector<Level> levels{{root, 0}};
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.next < tree.childCount(level.node)) {
            const Node child = tree.child(level.node, level.next++);
            enter(child);
            if (tree.type(child) == NodeType::element) levels.push_back({child, 0});
        } else {
            const Node left = level.node;
            levels.pop_back();
            if (!levels.empty()) leave(left);
        }
    }
}

void splitAtBlanks(const std::wstring& text, std::vector<std::wstring>& words) {
    for (auto start = text.begin(); (start = std::find_if_not(start, text.end(), isBlank)) != text.end();) {
        const auto end = std::find_if(start, text.end(), isBlank);
        words.emplace_back(start, end);
        start = end;
    }
}

class Walk {
  public:
    Walk(const GumboTree& walked, const TextStyle& rootStyle) : tree(walked), levels{{rootStyle, {}}} {}

    void enter(Node node) {
        if (tree.type(node) == NodeType::text) splitAtBlanks(tree.value(node), levels.back().pending);
        if (tree.type(node) != NodeType::element) return;
        Level inner{levels.back().style, {}};
        const std::wstring name = tree.name(node);
        for (const auto& row : effects)
            if (row.name == name) row.apply(tree, node, inner.style);
        // A line break belongs to the run before it, and ends that run.
        if (name == L"BR") levels.back().pending.emplace_back(lineFeed);
        endRun();
        levels.push_back(std::move(inner));
    }
    void leave() {
        endRun();
        levels.pop_back();
    }
    std::vector<TextRun> finish() {
        endRun();
        return std::move(runs);
    }

  private:
    struct Level {
        TextStyle style;
        std::vector<std::wstring> pending;
    };

    void endRun() {
        Level& level = levels.back();
        if (!level.pending.empty()) runs.push_back({std::exchange(level.pending, {}), level.style});
    }

    const GumboTree& tree;
    std::vector<Level> levels;
    std::vector<TextRun> runs;
};

class PlainWords {
  public:
    void add(std::wstring_view text) {
        for (const wchar_t character : text) {
            if (isBlank(character)) {
                blank = true;
                continue;
            }
            if (!words.empty()) {
                if (blank && lines == 0) words += L' ';
                for (; lines > 0; --lines) words += L"\r\n";
            }
            lines = 0;
            blank = false;
            words += character;
        }
    }
    void breakLine() { ++lines; }
    void startBlock() { lines = std::max(lines, 1); }
    std::wstring take() { return std::move(words); }

  private:
    std::wstring words;
    bool blank = false;  // white space since the last word
    int32_t lines = 0;   // line breaks since then
};

}  // namespace

LineHeight parseLineHeight(std::wstring_view value) {
    if (value.empty() || equalsAsciiCase(value, L"auto")) return {};
    const float number = numberAtStart(value);
    switch (value.back()) {
        case L'%':
            return {LineHeight::factor, number / 100};
        case L'X':
        case L'x':
            return {LineHeight::pixels, number};
        default:
            return {LineHeight::factor, number};
    }
}

std::vector<TextRun> walkMarkup(const GumboTree& tree, const TextStyle& rootStyle) {
    Walk walk(tree, rootStyle);
    if (const Node body = tree.body())
        traverse(
            tree, body, [&](Node node) { walk.enter(node); }, [&](Node) { walk.leave(); });
    return walk.finish();
}

std::wstring plainText(const GumboTree& tree) {
    PlainWords words;
    const auto startBlock = [&](Node element) {
        if (std::ranges::find(blocks, tree.name(element)) != std::end(blocks)) words.startBlock();
    };
    const auto enter = [&](Node node) {
        if (tree.type(node) == NodeType::text) words.add(tree.value(node));
        if (tree.type(node) != NodeType::element) return;
        if (tree.name(node) == L"BR") words.breakLine();
        startBlock(node);
    };
    if (const Node body = tree.body()) traverse(tree, body, enter, startBlock);
    return words.take();
}

}  // namespace pdx
