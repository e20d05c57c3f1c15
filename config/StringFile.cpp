#include "config/StringFile.h"

#include <windows.h>

#include <msxml2.h>

#include "platform/ComPtr.h"
#include "platform/Text.h"

namespace pdx {
namespace {

// Version 6 of the reader; the MinGW headers end at version 4.
constexpr CLSID domDocument60Class = {0x88d96a05, 0xf192, 0x11d4, {0xa6, 0x5f, 0x00, 0x40, 0x96, 0x32, 0x51, 0xe5}};
constexpr IID domDocument3Interface = {0x2933bf96, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};
struct DomDocument3 : IXMLDOMDocument2 {
    virtual HRESULT STDMETHODCALLTYPE validateNode(IXMLDOMNode* node, IXMLDOMParseError** error) = 0;
    virtual HRESULT STDMETHODCALLTYPE importNode(IXMLDOMNode* node, VARIANT_BOOL deep, IXMLDOMNode** clone) = 0;
};

/// The document element of a well-formed text; null otherwise.
ComPtr<IXMLDOMElement> parse(DomDocument3& document, std::string_view xml) {
    document.put_async(VARIANT_FALSE);
    document.put_validateOnParse(VARIANT_FALSE);
    document.put_resolveExternals(VARIANT_FALSE);
    const Bstr text(toWide(xml));
    VARIANT_BOOL loaded = VARIANT_FALSE;
    ComPtr<IXMLDOMElement> root;
    if (FAILED(document.loadXML(text.get(), &loaded)) || loaded != VARIANT_TRUE) return root;
    if (FAILED(document.get_documentElement(root.put()))) root = nullptr;
    return root;
}

/// A step succeeded and gave something: S_FALSE with nothing is how a missing attribute or node is told.
template <typename Given>
bool gave(HRESULT result, const Given& given) {
    return SUCCEEDED(result) && given;
}

/// Adds one node's string; does nothing when a step fails.
void readNode(IXMLDOMNode& node, StringTable& strings) {
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    if (!gave(node.get_attributes(attributes.put()), attributes)) return;
    const Bstr attributeName(L"Key");
    ComPtr<IXMLDOMNode> attribute;
    if (!gave(attributes->getNamedItem(attributeName.get(), attribute.put()), attribute)) return;
    Bstr key;
    Bstr text;
    if (FAILED(attribute->get_text(key.put())) || FAILED(node.get_text(text.put()))) return;
    strings.insert_or_assign(toLower(std::wstring(key.view())), std::wstring(text.view()));
}

}  // namespace

std::optional<StringTable> readStringFile(std::string_view xml) {
    ComPtr<DomDocument3> document;
    if (FAILED(CoCreateInstance(domDocument60Class, nullptr, CLSCTX_ALL, domDocument3Interface, document.putVoid()))) {
        return std::nullopt;
    }
    const ComPtr<IXMLDOMElement> root = parse(*document.get(), xml);
    if (!root) return std::nullopt;
    const Bstr path(L"//locStrings/locString");
    ComPtr<IXMLDOMNodeList> nodes;
    if (!gave(root->selectNodes(path.get(), nodes.put()), nodes)) return std::nullopt;

    StringTable strings;
    long count = 0;
    if (FAILED(nodes->get_length(&count))) count = 0;
    for (long index = 0; index < count; ++index) {
        ComPtr<IXMLDOMNode> node;
        if (gave(nodes->get_item(index, node.put()), node)) readNode(*node.get(), strings);
    }
    return strings;
}

}  // namespace pdx
