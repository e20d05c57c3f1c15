// Which handler of a window a message reaches, and what of the message's two words it is given.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace pdx {

/// The handlers of a window in the order of their slots; none for a message that goes to the default procedure.
enum class Handler : uint8_t {
    none,
    initDialog,
    eraseBackground,
    paint,
    windowPosChanging,
    windowPosChanged,
    ctlColorStatic,
    drawItem,
    ncHitTest,
    mouseEnter,
    mouseMove,
    mouseWheel,
    mouseLeave,
    lButtonDown,
    lButtonUp,
    command,
    close,
    destroy,
    userMessage,
    appMessage,
    setCursor,
    ncPaint,
    setText,
    printClient,
    setFocus,
    size,
    move,
    setFont,
    timer,
    queryEndSession,
    endSession,
    hScroll,
    vScroll,
    getDlgCode,
    keyDown,
    notify,
};

/// What an argument of a handler is taken from. Words and halves are unsigned where "Signed" does not stand.
enum class From : uint8_t {
    nothing,
    message,
    wparam,
    wparamLow,
    wparamHigh,
    wparamHighSigned,
    lparam,
    lparamLow,
    lparamHigh,
    lparamLowSigned,
    lparamHighSigned,
    lparamLowIsSet,  ///< 1 when the low half is not zero
    lparamBit24,     ///< a key of the extended keyboard
    lparamBit30,     ///< the key was down before
};

constexpr size_t maxHandlerArguments = 4;

struct MessageRoute {
    uint32_t first;  ///< message number, or the first of a range
    uint32_t last;
    Handler handler;
    std::array<From, maxHandlerArguments> arguments;
};

struct RoutedMessage {
    Handler handler = Handler::none;
    std::array<intptr_t, maxHandlerArguments> arguments{};
};

/// The handler of a message with its arguments. A mouse move that begins a visit (the pointer was not over the window
/// before) is asked for twice: first with beginsVisit for OnMouseEnter, then without for OnMouseMove.
RoutedMessage routeMessage(uint32_t message, uintptr_t wparam, intptr_t lparam, bool beginsVisit = false);

/// Whether a dialog procedure returns the handler's result itself; for every other message it stores the result and
/// returns "handled".
bool dialogReturnsResult(uint32_t message);

}  // namespace pdx
