#include "platform/HttpClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include <wininet.h>

#include <nlohmann/json.hpp>

#include "platform/Paths.h"
#include "platform/Text.h"

namespace pdx {
namespace {

using nlohmann::json;

/// "https://host.name"; empty where there is none.
std::string testHost() { return toUtf8(getEnvironmentText(L"PALISADE_TEST_HOST")); }

/// For tests that need the host, which harness/wine.py brings up.
class HttpClientTest : public testing::Test {
  protected:
    void SetUp() override {
        if (testHost().empty())
            GTEST_SKIP() << "NOT TESTED, for there is no host: "
                            "python3 -m harness.machine.sandbox python3 -m harness.wine tests";
    }
};

/// The answer as JSON, which ordinarily is the request that the host saw; discarded if it is none.
json seen(HttpClient& client) { return json::parse(client.readResponse(SIZE_MAX), nullptr, false); }

TEST(HttpClient, StartsNoRequestWithoutAnAddress) {
    HttpUrl noHost;
    noHost.path = L"/a";
    HttpUrl noPath;
    noPath.host = L"nowhere.example";
    for (const HttpUrl& url : {parseUrl(""), parseUrl("no address"), parseUrl("https:///"), noHost, noPath}) {
        HttpClient client(url);
        EXPECT_EQ(client.get(), -1) << testing::PrintToString(url.host + url.path);
        EXPECT_EQ(client.post("body", 4), -1);
        EXPECT_THAT(client.readResponse(), testing::IsEmpty());
    }
}

TEST_F(HttpClientTest, SendsPathAndQueryOverTlsWhateverTheScheme) {
    const std::pair<std::string, const char*> rows[] = {
        {testHost() + "/http/query/a?b=1&c=%20d#fragment", "/http/query/a?b=1&c=%20d#fragment"},
        {testHost() + "/http/query/a#fragment", "/http/query/a"},
        {testHost() + "/", "/"},
        {"http" + testHost().substr(5) + ":443/http/scheme", "/http/scheme"},
    };
    for (const auto& [url, path] : rows) {
        HttpClient client(parseUrl(url));
        ASSERT_EQ(client.get(), 0) << url;
        EXPECT_EQ(seen(client)["path"], path);
    }
}

TEST_F(HttpClientTest, ReusesItsConnection) {
    HttpClient client(parseUrl(testHost() + "/http/reuse"));
    ASSERT_EQ(client.get(), 0);
    const json first = seen(client);
    ASSERT_EQ(client.post("{}", 2), 0);
    EXPECT_EQ(seen(client)["connection"], first["connection"]);
    // An answer of which only the head was read.
    ASSERT_EQ(client.post("{}", 2), 0);
    ASSERT_EQ(client.post("{}", 2), 0);
    EXPECT_TRUE(seen(client).is_object());
}

TEST_F(HttpClientTest, ReadsBodiesOfEveryShape) {
    const std::pair<const char*, size_t> cases[] = {
        {"size=52428800", 52428800},
        {"size=3000000&chunked=1&piece=70000", 3000000},
        {"size=2000&piece=1", 2000},
    };
    for (const auto& [query, size] : cases) {
        HttpClient client(parseUrl(testHost() + "/http/bodies?" + query));
        ASSERT_EQ(client.get(), 0) << query;
        const std::vector<uint8_t> body = client.readResponse(SIZE_MAX);
        ASSERT_EQ(body.size(), size) << query;
        size_t wrong = 0;
        for (size_t at = 0; at < body.size(); ++at) wrong += body[at] != at % 251;
        EXPECT_EQ(wrong, 0u) << query;
    }
}

TEST_F(HttpClientTest, RefusesABodyAboveTheLimit) {
    for (const char* query : {"size=2000", "size=2000&piece=1&chunked=1"}) {
        HttpClient client(parseUrl(testHost() + "/http/most?" + query));
        ASSERT_EQ(client.get(), 0) << query;
        EXPECT_THAT(client.readResponse(2000), testing::SizeIs(2000)) << query;
        ASSERT_EQ(client.get(), 0) << query;
        EXPECT_THAT(client.readResponse(1999), testing::IsEmpty()) << query;
        EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_TOO_LARGE}) << query;
    }
}

TEST_F(HttpClientTest, ReconnectsAfterAFailedRead) {
    // Long enough for the reset to arrive while it is read.
    HttpClient client(parseUrl(testHost() + "/http/cut?size=20000000&cut=reset+half-way"));
    ASSERT_EQ(client.get(), 0);
    EXPECT_THAT(client.readResponse(SIZE_MAX), testing::IsEmpty());
    EXPECT_THAT(client.readResponse(), testing::IsEmpty());
    ASSERT_EQ(client.get(), 0);
    HttpClient lister(parseUrl(testHost() + "/requests?path=/http/cut&count=2"));
    ASSERT_EQ(lister.get(), 0);
    const json requests = seen(lister);
    ASSERT_EQ(requests.size(), 2u);
    EXPECT_NE(requests[0]["connection"], requests[1]["connection"]);
}

TEST_F(HttpClientTest, ReturnsTheErrorOfAFailedRequest) {
    // A reset is seen by whatever meets it first, on a busy machine by the reading of a head, which takes it for none.
    const std::pair<std::string, testing::Matcher<int32_t>> cases[] = {
        {testHost() + ":444/http/refused", ERROR_INTERNET_CANNOT_CONNECT},
        {"https://nowhere.example/", ERROR_INTERNET_NAME_NOT_RESOLVED},
        {testHost() + "/http/reset?cut=reset",
         testing::AnyOf(0, ERROR_INTERNET_CONNECTION_ABORTED, ERROR_INTERNET_CONNECTION_RESET)},
    };
    for (const auto& [url, error] : cases) {
        HttpClient client(parseUrl(url));
        EXPECT_THAT(client.get(), error) << url;
        EXPECT_THAT(client.readResponse(), testing::IsEmpty()) << url;
    }
}

}  // namespace
}  // namespace pdx
