// A MarkupTree made by the HTML parser Gumbo.
#pragma once

#include <memory>
#include <string_view>

#include "ui/toolkit/rules/MarkupTree.h"

namespace pdx {

/// Parses any text by the rules of HTML5, with fragments and unclosed or misplaced tags. The text is the content of the
/// body, titles and style sheets included. Elements that a browser does not show have no children.
class GumboTree : public MarkupTree {
  public:
    /// Cuts the text after 500 tags and after 16 KB.
    explicit GumboTree(std::string_view utf8);
    ~GumboTree() override;
    GumboTree(const GumboTree&) = delete;
    GumboTree& operator=(const GumboTree&) = delete;

    /// Whether the text was cut.
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
