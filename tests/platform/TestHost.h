// The HTTPS host that answers as a request's query tells it: harness/services/testhost.py.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "platform/HttpClient.h"
#include "platform/Paths.h"
#include "platform/Text.h"

namespace pdx {

/// "https://host.name"; empty where there is none.
inline std::string testHost() { return toUtf8(getEnvironmentText(L"PALISADE_TEST_HOST")); }

/// For tests that need the host, which harness/staging/wine_tests.py brings up.
class TestHostTest : public testing::Test {
  protected:
    void SetUp() override {
        if (testHost().empty())
            GTEST_SKIP()
                << "NOT TESTED, for there is no host: "
                   "python3 -m harness.machine.sandbox python3 -m harness.staging.wine_tests";
    }
};

inline std::string textOf(const std::vector<uint8_t>& bytes) { return {bytes.begin(), bytes.end()}; }

/// The body of a GET as JSON, discarded if there is none.
inline nlohmann::json getJson(std::string_view path) {
    HttpClient client(parseUrl(testHost() + std::string(path)));
    EXPECT_EQ(client.get(), 0) << path;
    return nlohmann::json::parse(textOf(client.readResponse()), nullptr, false);
}

/// What has come to paths that begin so, once there are that many requests.
inline nlohmann::json requestsTo(const std::string& path, size_t count) {
    return getJson("/requests?path=" + path + "&count=" + std::to_string(count));
}

}  // namespace pdx
