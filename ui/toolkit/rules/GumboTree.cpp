#include "ui/toolkit/rules/GumboTree.h"

#include <gumbo.h>

#include <algorithm>
#include <iterator>
#include <memory_resource>
#include <string>

#include "platform/rules/AsciiCase.h"
#include "platform/rules/Utf8.h"

namespace pdx {
namespace {

// Time and memory of the parser grow with the square of the number of tags, or of one tag's attributes. With these
// bounds the worst text takes some hundredths of a second. A label has some hundred bytes and a few tags.
constexpr size_t longestText = 16 << 10;  // bytes
constexpr size_t mostTags = 500;

/// Makes the text the content of a body. There, titles and styles stay in place, and a frame set, for which the parser
/// would discard the body, is ignored.
constexpr std::string_view opening = "<body>";

/// Elements whose content a browser does not show.
constexpr GumboTag hiddenTags[] = {GUMBO_TAG_SCRIPT, GUMBO_TAG_STYLE, GUMBO_TAG_TITLE, GUMBO_TAG_TEMPLATE};

bool isElement(const GumboNode* node) { return node->type == GUMBO_NODE_ELEMENT || node->type == GUMBO_NODE_TEMPLATE; }

std::string_view viewOf(const GumboStringPiece& piece) { return {piece.data, piece.length}; }

/// The text up to the bounds. Each "<" counts as a tag.
std::string_view withinBounds(std::string_view utf8) {
    const std::string_view text = utf8.substr(0, longestText);
    size_t tags = 0;
    for (size_t at = 0; at < text.size(); ++at)
        if (text[at] == '<' && ++tags > mostTags) return text.substr(0, at);
    return text;
}

}  // namespace

struct GumboTree::Parsed {
    explicit Parsed(std::string_view utf8) : source(opening) {
        source += utf8;
        GumboOptions options = kGumboDefaultOptions;
        options.max_errors = 0;  // each error would keep a list of all open elements
        options.userdata = &memory;
        options.allocator = [](void* from, size_t bytes) {
            return static_cast<std::pmr::memory_resource*>(from)->allocate(bytes, alignof(std::max_align_t));
        };
        // The memory is freed as a whole. The allocator throws when there is none, as the parser would write to null.
        options.deallocator = [](void*, void*) {};
        output = gumbo_parse_with_options(&options, source.data(), source.size());
    }

    std::string source;  // the tree points into it for the names of unknown elements
    std::pmr::monotonic_buffer_resource memory;
    const GumboOutput* output = nullptr;
};

GumboTree::GumboTree(std::string_view utf8) {
    const std::string_view bounded = withinBounds(utf8);
    cut = bounded.size() < utf8.size();
    parsed = std::make_unique<Parsed>(bounded);
}

GumboTree::~GumboTree() = default;

GumboTree::Node GumboTree::body() const {
    const GumboNode* root = parsed->output->root;
    for (size_t i = 0; root && i < childCount(root); ++i) {
        const GumboNode* node = child(root, i);
        if (isElement(node) && node->v.element.tag == GUMBO_TAG_BODY) return node;
    }
    return nullptr;
}

NodeType GumboTree::type(Node node) const {
    if (isElement(node)) return NodeType::element;
    switch (node->type) {
        case GUMBO_NODE_TEXT:
        case GUMBO_NODE_CDATA:
        case GUMBO_NODE_WHITESPACE:
            return NodeType::text;
        default:
            return NodeType::other;
    }
}

std::wstring GumboTree::name(Node element) const {
    const GumboElement& native = element->v.element;
    GumboStringPiece original = native.original_tag;
    gumbo_tag_from_original_text(&original);
    std::wstring capitals =
        toWide(native.tag == GUMBO_TAG_UNKNOWN ? viewOf(original) : gumbo_normalized_tagname(native.tag));
    std::ranges::transform(capitals, capitals.begin(), upperAscii<wchar_t>);
    return capitals;
}

std::wstring GumboTree::value(Node text) const { return toWide(text->v.text.text); }

size_t GumboTree::childCount(Node node) const {
    if (!isElement(node) || std::ranges::find(hiddenTags, node->v.element.tag) != std::end(hiddenTags)) return 0;
    return node->v.element.children.length;
}

GumboTree::Node GumboTree::child(Node node, size_t index) const {
    return static_cast<Node>(node->v.element.children.data[index]);
}

std::wstring GumboTree::attribute(Node element, const char* attributeName) const {
    const GumboAttribute* found = gumbo_get_attribute(&element->v.element.attributes, attributeName);
    return found ? toWide(found->value) : std::wstring();
}

}  // namespace pdx
