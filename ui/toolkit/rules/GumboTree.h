// The tree of a marked-up text, made by the HTML parser Gumbo.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

struct GumboInternalNode;

namespace pdx {

enum class NodeType { element, text, other };

/// Parses any text by the rules of HTML5, with fragments and unclosed or misplaced tags. The text is the content of the
/// body, titles and style sheets included. Elements that a browser does not show have no children. The tree owns its
/// nodes.
class GumboTree {
  public:
    using Node = const GumboInternalNode*;

    /// Cuts the text after 500 tags and after 16 KB.
    explicit GumboTree(std::string_view utf8);
    ~GumboTree();
    GumboTree(const GumboTree&) = delete;
    GumboTree& operator=(const GumboTree&) = delete;

    /// Whether the text was cut.
    [[nodiscard]] bool wasCut() const { return cut; }
    /// The body element; null when there is none.
    [[nodiscard]] Node body() const;
    [[nodiscard]] NodeType type(Node node) const;
    /// The name of an element, with a to z in capitals.
    [[nodiscard]] std::wstring name(Node element) const;
    /// The text of a text node, with entities decoded.
    [[nodiscard]] std::wstring value(Node text) const;
    [[nodiscard]] size_t childCount(Node node) const;
    [[nodiscard]] Node child(Node node, size_t index) const;
    /// The value of an attribute, in any case of the name; empty when the element has none.
    [[nodiscard]] std::wstring attribute(Node element, const char* attributeName) const;

  private:
    struct Parsed;
    std::unique_ptr<Parsed> parsed;
    bool cut = false;
};

}  // namespace pdx
