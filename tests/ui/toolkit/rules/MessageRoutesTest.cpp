#include "ui/toolkit/rules/MessageRoutes.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <vector>

namespace pdx {
namespace {

constexpr uintptr_t wparam = 0x8001'FFF0u;  // high half negative, low half above the signed range
constexpr auto lparam = static_cast<intptr_t>(static_cast<int32_t>(0xC100'FFFEu));  // high half negative, low half -2

struct RouteCase {
    uint32_t message;
    Handler handler;
    std::vector<intptr_t> arguments;
};

TEST(MessageRoutes, GiveEachHandlerItsPartsOfTheMessage) {
    const auto w = static_cast<intptr_t>(wparam);
    const RouteCase cases[] = {
        {272, Handler::initDialog, {}},
        {20, Handler::eraseBackground, {w}},
        {15, Handler::paint, {}},
        {70, Handler::windowPosChanging, {lparam}},
        {71, Handler::windowPosChanged, {lparam}},
        {312, Handler::ctlColorStatic, {lparam, w}},
        {43, Handler::drawItem, {w, lparam}},
        {132, Handler::ncHitTest, {-2, -16128}},
        {512, Handler::mouseMove, {-2, -16128}},
        {522, Handler::mouseWheel, {-32767, 0xFFF0, 0xFFFE, 0xC100}},
        {675, Handler::mouseLeave, {}},
        {513, Handler::lButtonDown, {w, 0xFFFE, 0xC100}},
        {514, Handler::lButtonUp, {w, 0xFFFE, 0xC100}},
        {273, Handler::command, {0xFFF0, 0x8001}},
        {16, Handler::close, {}},
        {2, Handler::destroy, {}},
        {1024, Handler::userMessage, {1024, w, lparam}},
        {32767, Handler::userMessage, {32767, w, lparam}},
        {32768, Handler::appMessage, {32768, w, lparam}},
        {49151, Handler::appMessage, {49151, w, lparam}},
        {32, Handler::setCursor, {w, 0xFFFE, 0xC100}},
        {133, Handler::ncPaint, {w}},
        {12, Handler::setText, {lparam}},
        {792, Handler::printClient, {w, lparam}},
        {7, Handler::setFocus, {w}},
        {5, Handler::size, {0xFFFE, 0xC100}},
        {3, Handler::move, {-2, -16128}},
        {48, Handler::setFont, {w, 1}},
        {275, Handler::timer, {w}},
        {17, Handler::queryEndSession, {}},
        {22, Handler::endSession, {}},
        {276, Handler::hScroll, {0xFFF0, 0x8001, lparam}},
        {277, Handler::vScroll, {0xFFF0, 0x8001, lparam}},
        {135, Handler::getDlgCode, {w}},
        {256, Handler::keyDown, {w, 0xFFFE, 1, 1}},
        {78, Handler::notify, {lparam}},
    };
    for (const RouteCase& row : cases) {
        const RoutedMessage routed = routeMessage(row.message, wparam, lparam);
        EXPECT_EQ(routed.handler, row.handler) << row.message;
        for (size_t i = 0; i < maxHandlerArguments; ++i)
            EXPECT_EQ(routed.arguments[i], i < row.arguments.size() ? row.arguments[i] : 0) << row.message << " " << i;
    }
}

TEST(MessageRoutes, LeaveAllOtherMessagesToTheDefaultProcedure) {
    for (const uint32_t message : {0u, 1u, 8u, 13u, 24u, 130u, 257u, 258u, 274u, 307u, 311u, 791u, 1023u, 49152u, ~0u})
        EXPECT_EQ(routeMessage(message, 1, 1).handler, Handler::none) << message;
}

TEST(MessageRoutes, AskForTheEnterHandlerOnlyWhenAVisitBegins) {
    const RoutedMessage enter = routeMessage(512, 0, static_cast<intptr_t>(0x0002'FFFFu), true);
    EXPECT_EQ(enter.handler, Handler::mouseEnter);
    EXPECT_EQ(enter.arguments, (std::array<intptr_t, 4>{-1, 2, 0, 0}));
    EXPECT_EQ(routeMessage(15, 0, 0, true).handler, Handler::paint);
}

TEST(MessageRoutes, ReadKeyAndRedrawBits) {
    EXPECT_EQ(routeMessage(256, 9, 0x0100'0003).arguments, (std::array<intptr_t, 4>{9, 3, 1, 0}));
    EXPECT_EQ(routeMessage(256, 9, 0x4000'0001).arguments, (std::array<intptr_t, 4>{9, 1, 0, 1}));
    EXPECT_EQ(routeMessage(48, 7, 0x0001'0000).arguments[1], 0);
    EXPECT_EQ(routeMessage(48, 7, 0x100).arguments[1], 1);
}

TEST(DialogResults, AreReturnedThemselvesForTheMessagesThatAskForIt) {
    const std::vector<uint32_t> direct = {46, 47, 55, 57, 272, 307, 308, 309, 310, 311, 312};
    for (uint32_t message = 0; message <= 49151; ++message)
        EXPECT_EQ(dialogReturnsResult(message), std::ranges::count(direct, message) == 1) << message;
}

}  // namespace
}  // namespace pdx
