#include "reporting/ErrorReport.h"

#include <exception>

#include "config/Settings.h"
#include "platform/ComApartment.h"
#include "platform/HttpClient.h"
#include "platform/Log.h"
#include "platform/OsIdentity.h"
#include "platform/Xml.h"
#include "reporting/rules/CheckValue.h"
#include "reporting/UploadPlace.h"

namespace pdx {
namespace {

struct Element {
    std::wstring_view name;
    std::string_view text;
};

/// A document that is built element by element. After any failure its text is empty.
class RequestDocument {
  public:
    RequestDocument() : document(newXmlDocument()), whole(static_cast<bool>(document)) {}

    ComPtr<IXMLDOMNode> addRoot(const Element& element) { return add(document.get(), element); }
    ComPtr<IXMLDOMNode> add(IXMLDOMNode* parent, const Element& element) {
        ComPtr<IXMLDOMNode> added;
        ComPtr<IXMLDOMElement> made;
        whole = whole && parent && SUCCEEDED(document->createElement(Bstr(element.name).get(), made.put())) &&
                (element.text.empty() || SUCCEEDED(made->put_text(Bstr(toWide(element.text)).get()))) &&
                SUCCEEDED(parent->appendChild(made.get(), added.put()));
        return added;
    }
    [[nodiscard]] std::string text() const {
        Bstr xml;
        return whole && SUCCEEDED(document->get_xml(xml.put())) ? toUtf8(xml.view()) : std::string();
    }

  private:
    ComPtr<IXMLDOMDocument2> document;
    bool whole;
};

/// The request for an upload address, as XML; empty if the system's XML writer is unavailable.
std::string uploadRequest(const ErrorReport& report, const std::string& launchSource) {
    const std::string size = std::to_string(report.package.size());
    const Element elements[] = {
        {L"bastionId", report.bastionId},
        {L"note", report.note},
        {L"category", report.category},
        {L"cenumber", report.ceNumber},
        {L"subscriber", {}},
        {L"launchSource", launchSource},
        {L"ejob", {}},
        {L"esys", {}},
        {L"offerid", {}},
    };
    const Element fileElements[] = {
        {L"name", report.fileName},
        {L"size", size},
        {L"contentType", report.contentType},
        {L"b64Md5", report.b64Md5},
    };
    RequestDocument document;
    const auto root = document.addRoot({L"reportRequest", {}});
    for (const Element& element : elements) document.add(root.get(), element);
    const auto files = document.add(root.get(), {L"files", {}});
    const auto file = document.add(files.get(), {L"file", {}});
    for (const Element& element : fileElements) document.add(file.get(), element);
    return document.text();
}

/// Sets trackingId and the report's signedUrl, both or neither.
bool requestUpload(ErrorReport& report, std::string& trackingId) {
    const std::string xml = uploadRequest(report, getConfigString("app.installertype"));
    if (xml.empty()) return false;
    const uint16_t checkValue = requestCheckValue(report.machineHash + report.timestamp + xml);
    HttpClient client(parseUrl(getConfigString("app.oer.url")));
    client.post(xml.data(), xml.size(),
                {{"Content-Type", "application/xml"},
                 {"x-machine-hash", report.machineHash},
                 {"x-bastion-client-version", report.clientVersion},
                 {"osVersion", getOsVersion()},
                 {"x-bastion-hash", std::to_string(checkValue)},
                 {"x-timestamp", report.timestamp}});
    const std::vector<uint8_t> response = client.readResponse();
    const auto place = readUploadPlace({reinterpret_cast<const char*>(response.data()), response.size()});
    if (!place) return false;
    trackingId = place->trackingId;
    report.signedUrl = place->signedUrl;
    return true;
}

void uploadData(const ErrorReport& report, const std::string& trackingId) {
    HttpClient client(parseUrl(report.signedUrl));
    const std::string size = std::to_string(report.package.size());
    client.put(report.package.data(), report.package.size(),
               {{"Content-Type", report.contentType},
                {"Content-Length", size},
                {"x-amz-meta-size", size},
                {"Content-MD5", report.b64Md5}});
    client.readResponse();
    // For any answer: the HTTP client does not read the status.
    PDX_LOG(logInfo, "`anonymous-namespace'::uploadData", "Uploaded report with trackingId=%s", trackingId);
}

}  // namespace

std::string sendErrorReport(const ReportFiles& files) noexcept {
    // Set once the service has named an address, and kept if the upload fails.
    std::string trackingId;
    try {
        ComApartment com;
        com.start();
        ErrorReport report = newErrorReport();
        buildPackage(report, files);
        if (requestUpload(report, trackingId)) uploadData(report, trackingId);
    } catch (const std::exception& problem) {
        // The exception's text is an argument, never the format.
        PDX_LOG(logError, "sendErrorReport", "The error report failed: %s", problem.what());
    }
    return trackingId;
}

}  // namespace pdx
