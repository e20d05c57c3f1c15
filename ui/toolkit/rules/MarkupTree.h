// What marked-up text needs of an HTML parser.
#pragma once

#include <cstddef>
#include <string>

namespace pdx {

enum class NodeType { element = 1, text = 3, other = 8 };

/// A parsed text. Nodes belong to the tree and live as long as it does.
class MarkupTree {
  public:
    using Node = const void*;

    virtual ~MarkupTree() = default;
    /// Null when there is none.
    [[nodiscard]] virtual Node body() const = 0;
    [[nodiscard]] virtual NodeType type(Node node) const = 0;
    /// The name of an element, A to Z in capitals.
    [[nodiscard]] virtual std::wstring name(Node element) const = 0;
    /// What a text node says, entities decoded.
    [[nodiscard]] virtual std::wstring value(Node text) const = 0;
    [[nodiscard]] virtual size_t childCount(Node node) const = 0;
    [[nodiscard]] virtual Node child(Node node, size_t index) const = 0;
    /// Empty when the element has no such attribute; case does not matter in the name.
    [[nodiscard]] virtual std::wstring attribute(Node element, const char* attributeName) const = 0;
};

}  // namespace pdx
