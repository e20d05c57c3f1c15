#include "reporting/UploadPlace.h"

#include <gtest/gtest.h>

namespace pdx {
namespace {

TEST(ReadUploadPlace, ReturnsNothingUnlessTheReplyNamesBoth) {
    const std::string put = "<puts><put><signedUrl>https://a.example/b?c=1&amp;d</signedUrl></put></puts>";
    const std::pair<std::string, bool> rows[] = {
        {"<reportResponse><trackingId>er-1 &amp;</trackingId>" + put + "</reportResponse>", true},
        {"<r><reportResponse>" + put + "<trackingId>er-1 &amp;</trackingId></reportResponse></r>", true},
        {"<reportResponse><trackingId/>" + put + "</reportResponse>", false},
        {"<reportResponse><trackingId>er-1</trackingId></reportResponse>", false},
        {"<other><trackingId>er-1</trackingId>" + put + "</other>", false},
        {"the service is down", false},
        // A document that would have a file of the machine put into the answer.
        {"<!DOCTYPE r [<!ENTITY x SYSTEM "
         "\"file:///C:/windows/win.ini\">]><reportResponse><trackingId>&x;</trackingId>" +
             put + "</reportResponse>",
         false},
    };
    for (const auto& [response, named] : rows) {
        const auto place = readUploadPlace(response);
        ASSERT_EQ(place.has_value(), named) << response;
        if (!named) continue;
        EXPECT_EQ(place->trackingId, "er-1 &");
        EXPECT_EQ(place->signedUrl, "https://a.example/b?c=1&d");
    }
}

}  // namespace
}  // namespace pdx
