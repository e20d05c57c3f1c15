#include "reporting/UploadPlace.h"

#include "platform/Text.h"
#include "platform/Xml.h"

namespace pdx {
namespace {

/// The text of the first node that the path finds; empty if there is none.
std::string textAt(IXMLDOMNode& root, std::wstring_view path) {
    const auto nodes = selectNodes(root, path);
    const auto text = nodes && !nodes->empty() ? textOf(*nodes->front().get()) : std::nullopt;
    return text ? toUtf8(*text) : std::string();
}

}  // namespace

std::optional<UploadPlace> readUploadPlace(std::string_view response) {
    const ComPtr<IXMLDOMElement> root = parseXml(response);
    if (!root) return std::nullopt;
    UploadPlace place = {textAt(*root.get(), L"//reportResponse/trackingId"),
                         textAt(*root.get(), L"//reportResponse/puts/put/signedUrl")};
    if (place.trackingId.empty() || place.signedUrl.empty()) return std::nullopt;
    return place;
}

}  // namespace pdx
