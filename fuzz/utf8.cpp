#include "platform/rules/Utf8.h"

#include "fuzz/Target.h"

namespace pdx::fuzz {

void utf8(std::string_view input) {
    const std::string once = toUtf8(toWide(input));
    require(toUtf8(toWide(once)) == once, "what was made well-formed stays");
    require(!isWellFormedUtf8(input) || once == input, "well-formed text stays");
    std::string added;
    appendWellFormed(added, input);
    require(added == once, "both ways to well-formed text agree");
    require(unfinishedUtf8(input) <= std::min<size_t>(3, input.size()), "a character has four bytes at most");
}

}  // namespace pdx::fuzz
