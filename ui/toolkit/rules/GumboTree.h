// The tree of an HTML text, made by Gumbo.
#pragma once

#include <memory>
#include <string_view>

#include "ui/toolkit/rules/MarkupTree.h"

namespace pdx {

/// Parses any text as HTML5 does: fragments, unclosed and misplaced tags, whatever case. The text is the content of
/// the body, so that titles and style sheets in it stand there too, but what a browser does not show has no children.
class GumboTree : public MarkupTree {
  public:
    /// Of a text with more than 500 tags or 16 KB, as far as that from its beginning.
    explicit GumboTree(std::string_view utf8);
    ~GumboTree() override;
    GumboTree(const GumboTree&) = delete;
    GumboTree& operator=(const GumboTree&) = delete;

    /// Whether the tree is of less than the whole text.
    [[nodiscard]] bool wasCut() const { return cut; }
    [[nodiscard]] Node body() const override;
    [[nodiscard]] NodeType type(Node node) const override;
    [[nodiscard]] std::wstring name(Node element) const override;
    [[nodiscard]] std::wstring value(Node text) const override;
    [[nodiscard]] size_t childCount(Node node) const override;
    [[nodiscard]] Node child(Node node, size_t index) const override;
    [[nodiscard]] std::wstring attribute(Node element, const char* attributeName) const override;

  private:
    struct Parsed;
    std::unique_ptr<Parsed> parsed;
    bool cut = false;
};

}  // namespace pdx
