#include "ui/toolkit/rules/GumboTree.h"

#include <gumbo.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <exception>
#include <iterator>
#include <memory_resource>

namespace pdx {
namespace {

constexpr size_t memoryLimit = 128u << 20;     // bytes; a text of a megabyte takes a tenth of it
constexpr uint64_t effortLimit = 200'000'000;  // comparisons; about a second

/// A well-formed tag makes the parser take the text for the content of a body, where no frame set is obeyed: one would
/// make it throw the body's tree away by recursion, as deep as the tree.
constexpr std::string_view opening = "<body>";

class TreeTooLarge : public std::exception {};

/// Memory of the heap up to the limit.
class LimitedMemory : public std::pmr::memory_resource {
  private:
    void* do_allocate(size_t bytes, size_t alignment) override {
        if (bytes > memoryLimit - used) throw TreeTooLarge();
        void* memory = std::pmr::new_delete_resource()->allocate(bytes, alignment);
        used += bytes;
        return memory;
    }
    void do_deallocate(void* memory, size_t bytes, size_t alignment) override {
        std::pmr::new_delete_resource()->deallocate(memory, bytes, alignment);
        used -= bytes;
    }
    [[nodiscard]] bool do_is_equal(const memory_resource& other) const noexcept override { return this == &other; }

    size_t used = 0;
};

constexpr GumboTag unseen[] = {GUMBO_TAG_SCRIPT, GUMBO_TAG_STYLE, GUMBO_TAG_TITLE, GUMBO_TAG_TEMPLATE};

const GumboNode* nodeOf(MarkupTree::Node node) { return static_cast<const GumboNode*>(node); }

bool isElement(const GumboNode* node) { return node->type == GUMBO_NODE_ELEMENT || node->type == GUMBO_NODE_TEMPLATE; }

/// What the parser gives is well-formed UTF-8 always.
std::wstring toWideText(std::string_view utf8) {
    std::wstring wide;
    wide.reserve(utf8.size());
    for (size_t at = 0; at < utf8.size();) {
        const auto lead = static_cast<uint8_t>(utf8[at++]);
        const int followers = lead < 0xC0 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        uint32_t code = followers == 0 ? lead : lead & (0x3Fu >> followers);
        for (int i = 0; i < followers && at < utf8.size(); ++i)
            code = code << 6 | (static_cast<uint8_t>(utf8[at++]) & 0x3F);
        if (sizeof(wchar_t) == 2 && code > 0xFFFF) {
            wide += static_cast<wchar_t>(0xD7C0 + (code >> 10));
            code = 0xDC00 | (code & 0x3FF);
        }
        wide += static_cast<wchar_t>(code);
    }
    return wide;
}

std::string_view viewOf(const GumboStringPiece& piece) { return {piece.data, piece.length}; }

}  // namespace

struct GumboTree::Parsed {
    /// Throws TreeTooLarge.
    explicit Parsed(std::string_view utf8) : source(opening) {
        source += utf8;
        GumboOptions options = kGumboDefaultOptions;
        options.max_errors = 0;  // each would keep a list of all open elements
        options.userdata = &memory;
        options.allocator = [](void* from, size_t bytes) {
            return static_cast<std::pmr::memory_resource*>(from)->allocate(bytes, alignof(std::max_align_t));
        };
        // The memory goes as a whole: the parser's own way of giving it back recurses as deep as the tree.
        options.deallocator = [](void*, void*) {};
        output = gumbo_parse_with_options(&options, source.data(), source.size());
    }

    std::string source;  // the names of unknown elements lie in it
    LimitedMemory limited;
    std::pmr::monotonic_buffer_resource memory{&limited};
    const GumboOutput* output = nullptr;
};

GumboTree::GumboTree(std::string_view utf8) {
    for (size_t length = affordableLength(utf8); !parsed; length /= 2) {
        try {
            parsed = std::make_unique<Parsed>(utf8.substr(0, length));
        } catch (const TreeTooLarge&) {
        }
    }
}

GumboTree::~GumboTree() = default;

MarkupTree::Node GumboTree::body() const {
    const GumboNode* root = parsed->output->root;
    for (size_t i = 0; root && i < childCount(root); ++i) {
        const GumboNode* node = nodeOf(child(root, i));
        if (isElement(node) && node->v.element.tag == GUMBO_TAG_BODY) return node;
    }
    return nullptr;
}

NodeType GumboTree::type(Node node) const {
    switch (nodeOf(node)->type) {
        case GUMBO_NODE_ELEMENT:
        case GUMBO_NODE_TEMPLATE:
            return NodeType::element;
        case GUMBO_NODE_TEXT:
        case GUMBO_NODE_CDATA:
        case GUMBO_NODE_WHITESPACE:
            return NodeType::text;
        default:
            return NodeType::other;
    }
}

std::wstring GumboTree::name(Node element) const {
    const GumboElement& native = nodeOf(element)->v.element;
    GumboStringPiece original = native.original_tag;
    gumbo_tag_from_original_text(&original);
    std::wstring capitals =
        toWideText(native.tag == GUMBO_TAG_UNKNOWN ? viewOf(original) : gumbo_normalized_tagname(native.tag));
    for (wchar_t& letter : capitals)
        if (letter >= L'a' && letter <= L'z') letter = static_cast<wchar_t>(letter - L'a' + L'A');
    return capitals;
}

std::wstring GumboTree::value(Node text) const { return toWideText(nodeOf(text)->v.text.text); }

size_t GumboTree::childCount(Node node) const {
    const GumboNode* native = nodeOf(node);
    if (!isElement(native) || std::ranges::find(unseen, native->v.element.tag) != std::end(unseen)) return 0;
    return native->v.element.children.length;
}

MarkupTree::Node GumboTree::child(Node node, size_t index) const {
    return nodeOf(node)->v.element.children.data[index];
}

std::wstring GumboTree::attribute(Node element, const char* attributeName) const {
    const GumboAttribute* found = gumbo_get_attribute(&nodeOf(element)->v.element.attributes, attributeName);
    return found ? toWideText(found->value) : std::wstring();
}

size_t affordableLength(std::string_view utf8) {
    uint64_t effort = 0;
    uint64_t open = 0, attributes = 0;
    bool inTag = false;
    for (size_t at = 0; at < utf8.size(); ++at) {
        const char character = utf8[at];
        const char next = at + 1 < utf8.size() ? utf8[at + 1] : '\0';
        if (character == '<') {
            // Roughly: an end tag may close nothing (then the memory's limit is what ends it), and a paragraph needs
            // none (which only an enormous text of them notices).
            const bool starts = std::isalpha(static_cast<unsigned char>(next)) != 0;
            const bool isBreak = (next == 'b' || next == 'B') && at + 2 < utf8.size() && (utf8[at + 2] | 0x20) == 'r';
            if (next == '/' && open > 0) --open;
            if (starts && !isBreak) ++open;
            effort += open;
            attributes = 0;
            inTag = starts || next == '/';
        } else if (character == '>') {
            inTag = false;
        } else if (inTag && !std::isalnum(static_cast<unsigned char>(character))) {
            effort += ++attributes;
        }
        if (effort > effortLimit) return at;
    }
    return utf8.size();
}

}  // namespace pdx
