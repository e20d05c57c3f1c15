#include "core/rules/Relaunch.h"

#include <vector>

#include "core/rules/VariableNames.h"
#include "fuzz/Arguments.h"
#include "fuzz/Target.h"
#include "platform/rules/CommandLine.h"
#include "platform/rules/Utf8.h"

namespace pdx::fuzz {

void command_line(std::string_view input) {
    Input fields(input);
    const std::wstring values[] = {toWide(fields.field()), toWide(fields.field())};
    const auto parameters =
        relaunchParameters([&](const wchar_t* name) { return values[std::wstring_view(name) == variable::authCode]; });
    const auto arguments = splitArguments(parameters);
    require(arguments.size() == 7, "each variable is one argument");
    for (const std::wstring& argument : arguments) {
        const auto read = variableOfArgument(argument);
        require(read && read->second == values[read->first == variable::authCode], "a value arrives as it was");
    }
    if (values[1].empty()) return;
    const auto client = splitArguments(authArgument(values[1]));
    require(client.size() == 1 && client[0] == L"--authCode=" + values[1], "a code arrives as it was");
}

}  // namespace pdx::fuzz
