// The state of a run for error reports: the current callback, its context, and the status that decides the outcome.
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

/// Any thread: the engine calls on several. The lock is never held while a message is sent, a wait runs or the engine
/// is called. Logging calls the engine.
class RunContext {
  public:
    using Json = nlohmann::json;

    /// A copy, with the whole context.
    struct State {
        Operation lastOperation = Operation::none;
        Json context = Json::object();
        InstallStatus status;
    };
    [[nodiscard]] State state() const;
    /// The status so far, which decides the outcome.
    [[nodiscard]] HRESULT status() const;

    /// Logs a callback's line and adds its arguments to the context by the operation's ContextRule. Without arguments
    /// the line is "Entering OnApplyBegin".
    void record(Operation operation, std::initializer_list<Fact> facts,
                std::source_location where = std::source_location::current());
    /// Logs the line only, for a callback without a number.
    static void trace(const char* callback, std::span<const Fact> facts,
                      std::source_location where = std::source_location::current());
    /// Begins a step with an empty context.
    void begin(Operation operation);
    /// Begins a step and keeps the context.
    void setOperation(Operation operation);
    /// Adds attributes to the context; a new value replaces an old one of the same key.
    void merge(const Json& attributes);
    /// Keeps the last Windows Installer message of a kind under its word.
    void keepMsiMessage(const char* word, int type, UINT flags, std::wstring_view message, TextList arguments,
                        int recommendation);

    /// Updates the run's status with that of a step (InstallStatus); logs a change.
    void updateStatus(HRESULT hr);
    /// Marks the current error as shown. Returns whether it was marked already.
    bool markErrorShown();

  private:
    mutable Lock lock;
    State current;
};

}  // namespace pdx
