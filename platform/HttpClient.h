// The only access to the network: a blocking HTTPS client of one URL.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/Handles.h"
#include "platform/rules/Numbers.h"
#include "platform/Url.h"

namespace pdx {

/// Names and values in the order in which they are sent; both UTF-8.
using HttpHeaders = std::vector<std::pair<std::string, std::string>>;

struct InternetHandleTraits {
    using Value = void*;
    static Value invalid() noexcept { return nullptr; }
    static void close(Value value) noexcept;
};
using InternetHandle = UniqueHandle<InternetHandleTraits>;

/// Requests to one URL over one connection, with TLS for every scheme. Used by one thread at a time, which waits as
/// long as the platform does: retries, time-outs and redirects are the platform's. Logs nothing. Does not read the
/// status of a response: a reply of 500 is a success with a body, which the caller parses.
class HttpClient {
  public:
    /// Copies the URL. A query is sent with the path, and so is a fragment after it. A fragment without a query is not
    /// sent. Does not connect. With a malformed URL (parseUrl) all requests return -1.
    explicit HttpClient(HttpUrl address);
    HttpClient(const HttpClient&) = delete;
    HttpClient& operator=(const HttpClient&) = delete;

    // Each sends one request and waits for the head of the response. Returns 0 on success and -1 if the request could
    // not be started. Otherwise returns the system's error, an ERROR_INTERNET_ value above 12000 for a network failure.
    // The length is in bytes; the body is not copied.
    int32_t get(const HttpHeaders& headers = {});
    int32_t post(const void* body, size_t length, const HttpHeaders& headers = {});
    int32_t put(const void* body, size_t length, const HttpHeaders& headers = {});

    /// The whole body of the response to the last request; empty on any failure, after which the next request makes a
    /// new connection. A body of more than `most` bytes is a failure too (ERROR_FILE_TOO_LARGE as last error), and its
    /// rest is not fetched.
    std::vector<uint8_t> readResponse(size_t most = mostReplyBytes);

  private:
    int32_t send(const wchar_t* method, const void* body, size_t length, const HttpHeaders& headers);

    // Closed in reverse order.
    InternetHandle session;
    InternetHandle connection;
    InternetHandle request;
    HttpUrl url;
};

/// Whether the system reports a connection to a network.
bool isNetworkConnected();

}  // namespace pdx
