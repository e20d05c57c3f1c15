// XML by the system's reader: a document from a text, and what is found in it. COM must be initialised on the calling
// thread.
#pragma once

#include <windows.h>

#include <msxml2.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ComPtr.h"

namespace pdx {

/// The document object of version 6, which reads nothing from outside; null when it cannot be had. Logs nothing.
ComPtr<IXMLDOMDocument2> newXmlDocument();

/// The document element of a well-formed text, which keeps its document alive; null otherwise. The text is UTF-8,
/// whatever its declaration names.
ComPtr<IXMLDOMElement> parseXml(std::string_view text);

/// The nodes that an XPath finds below a node, in the document's order. Nothing if the search fails.
std::optional<std::vector<ComPtr<IXMLDOMNode>>> selectNodes(IXMLDOMNode& below, std::wstring_view path);

/// The text of a node with all below it; nothing on failure.
std::optional<std::wstring> textOf(IXMLDOMNode& node);
/// The text of an attribute; nothing if the node has none of that name.
std::optional<std::wstring> attributeOf(IXMLDOMNode& node, std::wstring_view name);

}  // namespace pdx
