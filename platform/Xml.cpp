#include "platform/Xml.h"

#include "platform/Text.h"

namespace pdx {
namespace {

// Version 6 of the reader; the MinGW headers end at version 4.
constexpr CLSID domDocument60Class = {0x88d96a05, 0xf192, 0x11d4, {0xa6, 0x5f, 0x00, 0x40, 0x96, 0x32, 0x51, 0xe5}};
constexpr IID domDocument3Interface = {0x2933bf96, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};

/// Whether a step succeeded with a result: S_FALSE without one means a missing attribute or node.
template <typename Given>
bool gave(HRESULT result, const Given& given) {
    return SUCCEEDED(result) && given;
}

}  // namespace

ComPtr<IXMLDOMDocument2> newXmlDocument() {
    // The third interface begins with the methods of the second, and only those are called.
    ComPtr<IXMLDOMDocument2> document;
    if (FAILED(CoCreateInstance(domDocument60Class, nullptr, CLSCTX_ALL, domDocument3Interface, document.putVoid())))
        return nullptr;
    document->put_async(VARIANT_FALSE);
    document->put_validateOnParse(VARIANT_FALSE);
    document->put_resolveExternals(VARIANT_FALSE);
    return document;
}

ComPtr<IXMLDOMElement> parseXml(std::string_view text) {
    const ComPtr<IXMLDOMDocument2> document = newXmlDocument();
    const Bstr wide(toWide(text));
    VARIANT_BOOL loaded = VARIANT_FALSE;
    ComPtr<IXMLDOMElement> root;
    if (!document || FAILED(document->loadXML(wide.get(), &loaded)) || loaded != VARIANT_TRUE ||
        FAILED(document->get_documentElement(root.put())))
        return nullptr;
    return root;
}

std::optional<std::vector<ComPtr<IXMLDOMNode>>> selectNodes(IXMLDOMNode& below, std::wstring_view path) {
    const Bstr query(path);
    ComPtr<IXMLDOMNodeList> found;
    if (!gave(below.selectNodes(query.get(), found.put()), found)) return std::nullopt;
    std::vector<ComPtr<IXMLDOMNode>> nodes;
    long count = 0;
    if (FAILED(found->get_length(&count))) count = 0;
    for (long index = 0; index < count; ++index) {
        ComPtr<IXMLDOMNode> node;
        if (gave(found->get_item(index, node.put()), node)) nodes.push_back(std::move(node));
    }
    return nodes;
}

std::optional<std::wstring> textOf(IXMLDOMNode& node) {
    Bstr text;
    if (FAILED(node.get_text(text.put()))) return std::nullopt;
    return std::wstring(text.view());
}

std::optional<std::wstring> attributeOf(IXMLDOMNode& node, std::wstring_view name) {
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    if (!gave(node.get_attributes(attributes.put()), attributes)) return std::nullopt;
    const Bstr attributeName(name);
    ComPtr<IXMLDOMNode> attribute;
    if (!gave(attributes->getNamedItem(attributeName.get(), attribute.put()), attribute)) return std::nullopt;
    return textOf(*attribute.get());
}

}  // namespace pdx
