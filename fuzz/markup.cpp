#include "ui/toolkit/rules/Markup.h"
#include "fuzz/Target.h"

namespace pdx::fuzz {

void markup(std::string_view input) {
    const GumboTree tree(input);
    for (const TextRun& run : walkMarkup(tree, TextStyle()))
        for (const std::wstring& word : run.words) {
            require(!word.empty(), "no word is empty");
            require(word == lineFeed || word.find_first_of(L" \t\r\n") == std::wstring::npos, "no blank is in a word");
        }
    plainText(tree);
    parseLineHeight(std::wstring(input.begin(), input.end()));
}

}  // namespace pdx::fuzz
