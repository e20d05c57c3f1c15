#include "core/engine/CallbackFacts.h"

#include <fmt/format.h>

#include <cstdint>

#include "platform/Errors.h"
#include "platform/rules/Version.h"

namespace pdx {

std::string contextText(LPCWSTR text) { return toUtf8(textOrEmpty(text)); }

std::string contextStatus(HRESULT hr) { return fmt::format("{:08x}", static_cast<uint32_t>(hr)); }

std::wstring joinTexts(TextList list) {
    std::wstring joined;
    for (DWORD i = 0; list.texts && i < list.count; ++i) {
        if (i > 0) joined += L", ";
        joined += textOrEmpty(list.texts[i]);
    }
    return joined;
}

Fact::Fact(const char* argument, const char* contextKey, LPCWSTR text)
    : Fact(argument, contextKey, contextText(text)) {}
Fact::Fact(const char* argument, const char* contextKey, Status status)
    : Fact(argument, contextKey, describeError(status.hr), contextStatus(status.hr)) {}
Fact::Fact(const char* argument, const char* contextKey, Version version)
    : Fact(argument, contextKey, versionText(version.value)) {}
Fact::Fact(const char* argument, const char* contextKey, TextList list)
    : Fact(argument, contextKey, toUtf8(joinTexts(list))) {
    logged = '[' + logged + ']';
}
Fact::Fact(const char* argument, const char* contextKey, BoxStyle style)
    : Fact(argument, contextKey, nameOfMessageBoxStyle(style.style), style.style) {}

std::string lineOf(std::span<const Fact> facts) {
    std::string line;
    for (const Fact& fact : facts) {
        if (!line.empty()) line += ", ";
        line += fact.name;
        line += '=';
        line += fact.logged;
    }
    return line;
}

nlohmann::json contextOf(std::span<const Fact> facts) {
    nlohmann::json context = nlohmann::json::object();
    for (const Fact& fact : facts)
        if (fact.key) context[fact.key] = fact.kept;
    return context;
}

}  // namespace pdx
