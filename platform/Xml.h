// Reading XML with the system's reader. COM must be initialised on the calling thread.
#pragma once

#include <windows.h>

#include <msxml2.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ComPtr.h"

namespace pdx {

/// The document object of version 6, which resolves no external files; null if it is unavailable. Logs nothing.
ComPtr<IXMLDOMDocument2> newXmlDocument();

/// The document element of a text, which keeps its document alive; null if the text is malformed. The text is UTF-8,
/// even if its declaration names another encoding.
ComPtr<IXMLDOMElement> parseXml(std::string_view text);

/// The nodes that an XPath finds below a node, in the document's order. Nothing on failure.
std::optional<std::vector<ComPtr<IXMLDOMNode>>> selectNodes(IXMLDOMNode& below, std::wstring_view path);

/// The text of a node and the nodes below it; nothing on failure.
std::optional<std::wstring> textOf(IXMLDOMNode& node);
/// The text of an attribute; nothing if the node has none of that name.
std::optional<std::wstring> attributeOf(IXMLDOMNode& node, std::wstring_view name);

}  // namespace pdx
