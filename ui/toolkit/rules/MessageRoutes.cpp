#include "ui/toolkit/rules/MessageRoutes.h"

#include <algorithm>

namespace pdx {
namespace {

using enum From;

// clang-format off
constexpr MessageRoute routes[] = {
    {272, 272, Handler::initDialog, {}},
    {20, 20, Handler::eraseBackground, {wparam}},
    {15, 15, Handler::paint, {}},
    {70, 70, Handler::windowPosChanging, {lparam}},
    {71, 71, Handler::windowPosChanged, {lparam}},
    {312, 312, Handler::ctlColorStatic, {lparam, wparam}},
    {43, 43, Handler::drawItem, {wparam, lparam}},
    {132, 132, Handler::ncHitTest, {lparamLowSigned, lparamHighSigned}},
    {512, 512, Handler::mouseEnter, {lparamLowSigned, lparamHighSigned}},
    {512, 512, Handler::mouseMove, {lparamLowSigned, lparamHighSigned}},
    {522, 522, Handler::mouseWheel, {wparamHighSigned, wparamLow, lparamLow, lparamHigh}},
    {675, 675, Handler::mouseLeave, {}},
    {513, 513, Handler::lButtonDown, {wparam, lparamLow, lparamHigh}},
    {514, 514, Handler::lButtonUp, {wparam, lparamLow, lparamHigh}},
    {273, 273, Handler::command, {wparamLow, wparamHigh}},
    {16, 16, Handler::close, {}},
    {2, 2, Handler::destroy, {}},
    {1024, 32767, Handler::userMessage, {message, wparam, lparam}},
    {32768, 49151, Handler::appMessage, {message, wparam, lparam}},
    {32, 32, Handler::setCursor, {wparam, lparamLow, lparamHigh}},
    {133, 133, Handler::ncPaint, {wparam}},
    {12, 12, Handler::setText, {lparam}},
    {792, 792, Handler::printClient, {wparam, lparam}},
    {7, 7, Handler::setFocus, {wparam}},
    {5, 5, Handler::size, {lparamLow, lparamHigh}},
    {3, 3, Handler::move, {lparamLowSigned, lparamHighSigned}},
    {48, 48, Handler::setFont, {wparam, lparamLowIsSet}},
    {275, 275, Handler::timer, {wparam}},
    {17, 17, Handler::queryEndSession, {}},
    {22, 22, Handler::endSession, {}},
    {276, 276, Handler::hScroll, {wparamLow, wparamHigh, lparam}},
    {277, 277, Handler::vScroll, {wparamLow, wparamHigh, lparam}},
    {135, 135, Handler::getDlgCode, {wparam}},
    {256, 256, Handler::keyDown, {wparam, lparamLow, lparamBit24, lparamBit30}},
    {78, 78, Handler::notify, {lparam}},
};
// clang-format on

constexpr intptr_t lowHalf(uintptr_t word) { return static_cast<uint16_t>(word); }
constexpr intptr_t highHalf(uintptr_t word) { return static_cast<uint16_t>(word >> 16); }

intptr_t takeArgument(From from, uint32_t number, uintptr_t first, intptr_t second) {
    const auto secondWord = static_cast<uintptr_t>(second);
    switch (from) {
        case nothing:
            return 0;
        case message:
            return static_cast<intptr_t>(number);
        case wparam:
            return static_cast<intptr_t>(first);
        case wparamLow:
            return lowHalf(first);
        case wparamHigh:
            return highHalf(first);
        case wparamHighSigned:
            return static_cast<int16_t>(highHalf(first));
        case lparam:
            return second;
        case lparamLow:
            return lowHalf(secondWord);
        case lparamHigh:
            return highHalf(secondWord);
        case lparamLowSigned:
            return static_cast<int16_t>(lowHalf(secondWord));
        case lparamHighSigned:
            return static_cast<int16_t>(highHalf(secondWord));
        case lparamLowIsSet:
            return lowHalf(secondWord) != 0;
        case lparamBit24:
            return (secondWord >> 24) & 1;
        case lparamBit30:
            return (secondWord >> 30) & 1;
    }
    return 0;
}

}  // namespace

RoutedMessage routeMessage(uint32_t number, uintptr_t first, intptr_t second, bool beginsVisit) {
    const auto row = std::ranges::find_if(routes, [&](const MessageRoute& route) {
        return number >= route.first && number <= route.last && (beginsVisit || route.handler != Handler::mouseEnter);
    });
    RoutedMessage routed;
    if (row == std::ranges::end(routes)) return routed;
    routed.handler = row->handler;
    for (size_t i = 0; i < maxHandlerArguments; ++i)
        routed.arguments[i] = takeArgument(row->arguments[i], number, first, second);
    return routed;
}

bool dialogReturnsResult(uint32_t number) {
    constexpr uint32_t vkeyToItem = 46, charToItem = 47, queryDragIcon = 55, compareItem = 57, initDialog = 272;
    constexpr uint32_t firstColor = 307, lastColor = 312;
    constexpr uint32_t single[] = {vkeyToItem, charToItem, queryDragIcon, compareItem, initDialog};
    return std::ranges::find(single, number) != std::ranges::end(single) ||
           (number >= firstColor && number <= lastColor);
}

}  // namespace pdx
