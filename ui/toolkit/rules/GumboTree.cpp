#include "ui/toolkit/rules/GumboTree.h"

#include <gumbo.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <exception>
#include <functional>
#include <iterator>
#include <memory_resource>
#include <span>
#include <string>
#include <vector>

#include "platform/rules/Utf8.h"

namespace pdx {
namespace {

constexpr size_t memoryLimit = 128u << 20;     // bytes; a text of a megabyte takes a tenth of it
constexpr uint64_t effortLimit = 200'000'000;  // comparisons; a quarter of a second, on a slow machine one

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

std::string_view viewOf(const GumboStringPiece& piece) { return {piece.data, piece.length}; }

bool isAlphanumeric(char character) { return std::isalnum(static_cast<unsigned char>(character)) != 0; }

/// The tag's name that a text begins with, in small letters and cut to a length that tells all known ones apart; empty
/// when it begins with no letter.
std::string tagNameAt(std::string_view text) {
    constexpr size_t longest = 15;
    std::string name;
    if (text.empty() || !std::isalpha(static_cast<unsigned char>(text[0]))) return name;
    for (size_t at = 0; at < text.size() && name.size() < longest && isAlphanumeric(text[at]); ++at)
        name += static_cast<char>(std::tolower(static_cast<unsigned char>(text[at])));
    return name;
}

/// Roughly the parser's stack of open elements, for what each tag costs it in comparisons. It knows nothing of the end
/// tags that HTML lets one leave out (which only an enormous text of paragraphs or items notices).
class OpenTags {
  public:
    uint64_t start(std::string_view name) {
        if (!contains(childless, name)) names.push_back(hashOf(name));
        return contains(styles, name) ? names.size() : blockStep * names.size();
    }
    uint64_t end(std::string_view name) {
        const bool isStyle = contains(styles, name);
        const auto found = std::find(names.rbegin(), names.rend(), hashOf(name));
        const auto distance = static_cast<uint64_t>(found - names.rbegin());
        // A tag that closes nothing is looked for in the whole stack, unless the list of open styles lacks it.
        if (found == names.rend()) return isStyle ? distance : endStep * distance;
        const uint64_t effort = endStep * distance + (isStyle && distance > 0 ? styleStep * names.size() : 0);
        // What lies within a style that is closed too early goes on behind it.
        const auto place = found.base() - 1;
        names.erase(place, isStyle ? place + 1 : names.end());
        return effort;
    }

  private:
    static bool contains(std::span<const std::string_view> tags, std::string_view name) {
        return std::ranges::find(tags, name) != tags.end();
    }
    static size_t hashOf(std::string_view name) { return std::hash<std::string_view>()(name); }

    // What a step down the stack takes in comparisons, as measured: for a block, which first closes a paragraph; for an
    // end tag, which looks each element up among the special ones; for a style that is closed around a block.
    static constexpr uint64_t blockStep = 3;
    static constexpr uint64_t endStep = 20;
    static constexpr uint64_t styleStep = 12;
    static constexpr std::string_view childless[] = {"area",  "base", "br",   "col",   "embed",  "hr",    "img",
                                                     "input", "link", "meta", "param", "source", "track", "wbr"};
    static constexpr std::string_view styles[] = {"a",    "b", "big",   "code",   "em",     "font", "i",
                                                  "nobr", "s", "small", "strike", "strong", "tt",   "u"};
    std::vector<size_t> names;  // hashes, the innermost last
};

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
            cut = length < utf8.size();
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
        toWide(native.tag == GUMBO_TAG_UNKNOWN ? viewOf(original) : gumbo_normalized_tagname(native.tag));
    for (wchar_t& letter : capitals)
        if (letter >= L'a' && letter <= L'z') letter = static_cast<wchar_t>(letter - L'a' + L'A');
    return capitals;
}

std::wstring GumboTree::value(Node text) const { return toWide(nodeOf(text)->v.text.text); }

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
    return found ? toWide(found->value) : std::wstring();
}

size_t affordableLength(std::string_view utf8) {
    OpenTags open;
    uint64_t effort = 0, attributes = 0;
    bool inTag = false;
    for (size_t at = 0; at < utf8.size(); ++at) {
        const char character = utf8[at];
        const std::string_view rest = utf8.substr(at + 1);
        if (character == '<') {
            const bool ends = rest.starts_with('/');
            const std::string name = tagNameAt(rest.substr(ends ? 1 : 0));
            inTag = !name.empty();
            attributes = 0;
            if (inTag) effort += ends ? open.end(name) : open.start(name);
        } else if (character == '>') {
            inTag = false;
        } else if (inTag && !isAlphanumeric(character)) {
            effort += ++attributes;
        }
        if (effort > effortLimit) return at;
    }
    return utf8.size();
}

}  // namespace pdx
