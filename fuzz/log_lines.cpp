#include "reporting/rules/LogLines.h"

#include "fuzz/Target.h"
#include "platform/rules/Utf8.h"

namespace pdx::fuzz {

namespace {

const LogScrubber& scrubber() {
    static const LogScrubber made(makeScrubTexts(L"C:\\Users\\ann\\", L"C:\\ANN~1\\", L"ann",
                                                 [](std::wstring_view a, std::wstring_view b) { return a == b; }));
    return made;
}

}  // namespace

void log_lines(std::string_view input) {
    Input fields(input);
    const size_t cuts[] = {fields.byte(), fields.byte(), fields.byte()};
    const std::string_view text = fields.rest();
    std::string read[2];
    for (const bool inBlocks : {false, true}) {
        LogReader reader(logEncodingOf(text), scrubber());
        const auto take = [&](std::string_view piece) { read[inBlocks] += piece; };
        std::string_view left = text;
        for (size_t cut = 0; inBlocks && cut < 3 && !left.empty(); ++cut) {
            const size_t size = std::min(cuts[cut], left.size());
            reader.feed(left.substr(0, size), take);
            left.remove_prefix(size);
        }
        reader.feed(left, take);
        reader.finish(take);
    }
    require(read[0] == read[1], "blocks give the text that one block gives");
    require(toUtf8(toWide(read[0])) == read[0], "a scrubbed log is UTF-8");
    for (const char* name : {"\\Users\\ann\\", "/Users/ann/", "\\ANN~1\\"})
        require(read[0].find(std::string("C:") + name) == std::string::npos, "no profile path is shown");
}

}  // namespace pdx::fuzz
