// The HTTPS host that answers as a request's query tells it: harness/services/testhost.py.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "platform/HttpClient.h"
#include "platform/Paths.h"

namespace pdx {

inline const std::string testHost = "https://tests.corvaneworks.example";

/// For tests that need the host, which is there in the sandbox of harness/wine_tests.py alone.
class TestHostTest : public testing::Test {
  protected:
    void SetUp() override {
        if (getEnvironmentText(L"PALISADE_SANDBOX").empty())
            GTEST_SKIP() << "NOT TESTED: no services. Run python3 -m harness.sandbox python3 -m harness.wine_tests";
    }
};

inline std::string textOf(const std::vector<uint8_t>& bytes) { return {bytes.begin(), bytes.end()}; }

/// The body of a GET as JSON, discarded if there is none.
inline nlohmann::json getJson(std::string_view path) {
    HttpClient client(parseUrl(testHost + std::string(path)));
    EXPECT_EQ(client.get(), 0) << path;
    return nlohmann::json::parse(textOf(client.readResponse()), nullptr, false);
}

/// What has come to paths that begin so, once there are that many requests.
inline nlohmann::json requestsTo(const std::string& path, size_t count) {
    return getJson("/requests?path=" + path + "&count=" + std::to_string(count));
}

}  // namespace pdx
