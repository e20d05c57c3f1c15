#include "core/RunContext.h"

#include <mutex>
#include <utility>

#include "platform/Errors.h"
#include "platform/Log.h"

namespace pdx {

RunContext::State RunContext::state() const {
    const std::lock_guard guard(lock);
    return current;
}

HRESULT RunContext::status() const {
    const std::lock_guard guard(lock);
    return current.status.status;
}

void RunContext::record(Operation operation, std::initializer_list<Fact> facts, std::source_location where) {
    const OperationRow& row = rowOf(operation);
    const std::string name = row.callback;
    const std::string line = facts.size() == 0 ? "Entering " + name.substr(name.rfind(':') + 1) : lineOf(facts);
    logMessage(logTrace, row.callback, static_cast<int32_t>(where.line()), "%s", line);
    Json attributes = contextOf(facts);
    const std::lock_guard guard(lock);
    current.lastOperation = operation;
    if (row.rule == ContextRule::replace)
        current.context = std::move(attributes);
    else
        current.context.update(attributes);
}

void RunContext::trace(const char* callback, std::span<const Fact> facts, std::source_location where) {
    logMessage(logTrace, callback, static_cast<int32_t>(where.line()), "%s", lineOf(facts));
}

void RunContext::begin(Operation operation) {
    const std::lock_guard guard(lock);
    current.lastOperation = operation;
    current.context = Json::object();
}

void RunContext::setOperation(Operation operation) {
    const std::lock_guard guard(lock);
    current.lastOperation = operation;
}

void RunContext::merge(const Json& attributes) {
    const std::lock_guard guard(lock);
    current.context.update(attributes);
}

void RunContext::keepMsiMessage(const char* word, int type, UINT flags, std::wstring_view message, TextList arguments,
                                int recommendation) {
    // Runs for every line of a long install, so the kind's object is overwritten in place.
    const std::lock_guard guard(lock);
    Json& entry = current.context[word];
    if (!entry.is_object() || entry.size() != 5)
        entry = {{"imsg", 0}, {"flag", 0u}, {"mesg", ""}, {"args", ""}, {"reco", 0}};
    entry["imsg"] = type;
    entry["flag"] = flags;
    entry["reco"] = recommendation;
    assignUtf8(entry["mesg"].get_ref<std::string&>(), message);
    assignUtf8(entry["args"].get_ref<std::string&>(), joinTexts(arguments));
}

void RunContext::updateStatus(HRESULT hr) {
    HRESULT before = 0;
    {
        const std::lock_guard guard(lock);
        before = current.status.status;
        if (!current.status.update(hr, current.lastOperation, current.context)) return;
    }
    PDX_LOG(logInfo, "BootstrapperApplication::UpdateInstallStatus",
            "Updating install status from %s (%08x) to %s (%08x)", describeError(before), static_cast<uint32_t>(before),
            describeError(hr), static_cast<uint32_t>(hr));
}

bool RunContext::markErrorShown() {
    const std::lock_guard guard(lock);
    return std::exchange(current.status.errorShown, true);
}

}  // namespace pdx
