// The only access to the network: a blocking client of one host and one path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/Handles.h"
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

/// Requests to one URL over one connection, always with TLS, whatever scheme the URL names. Used by one thread at a
/// time, which waits as long as the platform does: retries, time-outs and redirects are the platform's. Nothing is
/// logged. The status of a response is not read: a reply of 500 is a success with a body, which the caller parses.
class HttpClient {
  public:
    /// Takes a copy of the URL; its query is sent as part of the path, a bare fragment not at all. Does not connect. A
    /// URL that is none (parseUrl) makes a client whose requests give -1.
    explicit HttpClient(const HttpUrl& address);
    HttpClient(const HttpClient&) = delete;
    HttpClient& operator=(const HttpClient&) = delete;

    // Each sends one request and waits until the head of the response is here. 0 on success, -1 if the request could
    // not be started, otherwise the system's error (an ERROR_INTERNET_ value above 12000 where the network failed).
    // The length is in bytes; the body is not kept.
    int32_t get(const HttpHeaders& headers = {});
    int32_t post(const void* body, size_t length, const HttpHeaders& headers = {});
    int32_t put(const void* body, size_t length, const HttpHeaders& headers = {});

    /// The whole body of the response to the last request; empty on any failure, and the next request then makes a new
    /// connection. A body of more bytes than wanted is a failure too (ERROR_FILE_TOO_LARGE as last error), and its rest
    /// is not fetched.
    std::vector<uint8_t> readResponse(size_t most = SIZE_MAX);

  private:
    int32_t send(const wchar_t* method, const void* body, size_t length, const HttpHeaders& headers);

    // Closed in the opposite order.
    InternetHandle session;
    InternetHandle connection;
    InternetHandle request;
    HttpUrl url;
};

/// Whether the system reports a connection to a network.
bool isNetworkConnected();

}  // namespace pdx
