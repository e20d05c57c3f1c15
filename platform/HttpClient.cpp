#include "platform/HttpClient.h"

#include <windows.h>

#include <wininet.h>

#include <new>
#include <stdexcept>

#include "platform/product/InstallerVersion.h"
#include "platform/Text.h"

namespace pdx {
namespace {

constexpr int32_t notStarted = -1;

std::string headerBlock(const HttpHeaders& headers) {
    std::string block;
    for (const auto& [name, value] : headers) block.append(name).append(": ").append(value).append("\r\n");
    return block;
}

/// False if there is not enough memory.
bool grow(std::vector<uint8_t>& bytes, size_t more) {
    try {
        bytes.resize(bytes.size() + more);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
}

/// Appends the bytes that are available. False on failure; sets complete at the end of the body.
bool readPiece(HINTERNET request, std::vector<uint8_t>& body, bool& complete) {
    DWORD available = 0;
    if (!InternetQueryDataAvailable(request, &available, 0, 0)) return false;
    complete = available == 0;
    if (complete) return true;
    const size_t before = body.size();
    DWORD read = 0;
    return grow(body, available) && InternetReadFile(request, body.data() + before, available, &read) &&
           read == available;
}

}  // namespace

void InternetHandleTraits::close(Value value) noexcept { InternetCloseHandle(value); }

HttpClient::HttpClient(HttpUrl address)
    : session(InternetOpenW((L"Palisade app Installer/" + toWide(installerVersion)).c_str(),
                            INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0)),
      url(std::move(address)) {
    if (url.extra.starts_with(L'?')) url.path += url.extra;
}

int32_t HttpClient::get(const HttpHeaders& headers) { return send(L"GET", nullptr, 0, headers); }

int32_t HttpClient::post(const void* body, size_t length, const HttpHeaders& headers) {
    return send(L"POST", body, length, headers);
}

int32_t HttpClient::put(const void* body, size_t length, const HttpHeaders& headers) {
    return send(L"PUT", body, length, headers);
}

int32_t HttpClient::send(const wchar_t* method, const void* body, size_t length, const HttpHeaders& headers) {
    if (!session || url.path.empty()) return notStarted;
    request.reset();  // first, so that the next request can reuse its connection
    if (!connection)
        connection.reset(
            InternetConnectW(session.get(), url.host.c_str(), url.port, L"", L"", INTERNET_SERVICE_HTTP, 0, 0));
    if (!connection) return notStarted;
    request.reset(HttpOpenRequestW(connection.get(), method, url.path.c_str(), nullptr, nullptr, nullptr,
                                   INTERNET_FLAG_SECURE, 0));
    if (!request) return notStarted;
    const std::wstring block = toWide(headerBlock(headers));
    // The length of the wide text: equal to the bytes of an ASCII block, and within the buffer for any other.
    const bool sent =
        HttpSendRequestW(request.get(), block.empty() ? nullptr : block.c_str(), static_cast<DWORD>(block.size()),
                         const_cast<void*>(body), static_cast<DWORD>(length));
    return sent ? 0 : static_cast<int32_t>(GetLastError());
}

std::vector<uint8_t> HttpClient::readResponse(size_t most) {
    std::vector<uint8_t> body;
    for (bool complete = false; !complete;) {
        const bool tooLong = body.size() > most;
        if (!tooLong && readPiece(request.get(), body, complete)) continue;
        request.reset();
        connection.reset();
        if (tooLong) SetLastError(ERROR_FILE_TOO_LARGE);
        return {};
    }
    return body;
}

bool isNetworkConnected() {
    DWORD kind = 0;
    return InternetGetConnectedState(&kind, 0) != FALSE;
}

}  // namespace pdx
