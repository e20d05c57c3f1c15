// The interface of an HTML parser for marked-up text.
#pragma once

#include <cstddef>
#include <string>

namespace pdx {

enum class NodeType { element = 1, text = 3, other = 8 };

/// A parsed text. The tree owns its nodes.
class MarkupTree {
  public:
    using Node = const void*;

    virtual ~MarkupTree() = default;
    /// The body element; null when there is none.
    [[nodiscard]] virtual Node body() const = 0;
    [[nodiscard]] virtual NodeType type(Node node) const = 0;
    /// The name of an element, with a to z in capitals.
    [[nodiscard]] virtual std::wstring name(Node element) const = 0;
    /// The text of a text node, with entities decoded.
    [[nodiscard]] virtual std::wstring value(Node text) const = 0;
    [[nodiscard]] virtual size_t childCount(Node node) const = 0;
    [[nodiscard]] virtual Node child(Node node, size_t index) const = 0;
    /// The value of an attribute, in any case of the name; empty when the element has none.
    [[nodiscard]] virtual std::wstring attribute(Node element, const char* attributeName) const = 0;
};

}  // namespace pdx
