#include "config/StringFile.h"

#include "platform/rules/AsciiCase.h"
#include "platform/Xml.h"

namespace pdx {

std::optional<StringTable> readStringFile(std::string_view xml) {
    const ComPtr<IXMLDOMElement> root = parseXml(xml);
    if (!root) return std::nullopt;
    const auto nodes = selectNodes(*root.get(), L"//locStrings/locString");
    if (!nodes) return std::nullopt;
    StringTable strings;
    for (const ComPtr<IXMLDOMNode>& node : *nodes) {
        auto key = attributeOf(*node.get(), L"Key");
        auto text = textOf(*node.get());
        if (key && text) strings.insert_or_assign(loweredAscii<wchar_t>(*key), std::move(*text));
    }
    return strings;
}

}  // namespace pdx
