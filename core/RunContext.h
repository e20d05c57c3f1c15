// What is known of a run while it goes on: the current callback, its context, and the status that decides the outcome.
#pragma once

#include <initializer_list>
#include <nlohmann/json.hpp>
#include <source_location>
#include <span>
#include <string_view>

#include "core/engine/CallbackFacts.h"
#include "core/engine/rules/Operations.h"
#include "core/rules/InstallStatus.h"
#include "platform/Lock.h"

namespace pdx {

/// Any thread: the engine's callbacks come on several. Its lock is held across no message, wait or engine call, and so
/// across no log line.
class RunContext {
  public:
    using Json = nlohmann::json;

    /// A copy of the moment, the whole context with it.
    struct State {
        Operation lastOperation = Operation::none;
        Json context = Json::object();
        InstallStatus status;
    };
    [[nodiscard]] State state() const;
    /// The status that decides the outcome, as far as it is known.
    [[nodiscard]] HRESULT status() const;

    /// Logs a callback's line and takes its arguments into the context by the operation's rule. Without arguments the
    /// line is "Entering OnApplyBegin".
    void record(Operation operation, std::initializer_list<Fact> facts,
                std::source_location where = std::source_location::current());
    /// The line alone, of a callback without a number.
    static void trace(const char* callback, std::span<const Fact> facts,
                      std::source_location where = std::source_location::current());
    /// A step begins, with an empty context.
    void begin(Operation operation);
    /// A step begins; the context stays.
    void setOperation(Operation operation);
    void merge(Operation operation, const Json& attributes);
    void merge(const Json& attributes);
    /// Keeps the last Windows Installer message of a kind under its word.
    void keepMsiMessage(const char* word, int type, UINT flags, std::wstring_view message, TextList arguments,
                        int recommendation);

    /// Takes the status of a step into the one that decides the outcome; logs a change.
    void updateStatus(HRESULT hr);
    /// The error prompt is shown for the current error. Whether it was before.
    bool markErrorShown();

  private:
    mutable Lock lock;
    State current;
};

}  // namespace pdx
