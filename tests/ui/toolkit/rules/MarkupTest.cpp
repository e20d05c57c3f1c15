#include "ui/toolkit/rules/Markup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ui/toolkit/rules/GumboTree.h"

namespace pdx {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

const TextStyle root = {.logFont = {.height = 16, .weight = 400, .quality = 4, .face = L"Face"},
                        .lineHeight = {LineHeight::pixels, 26}};

std::vector<TextRun> runsOf(std::string_view html) { return walkMarkup(GumboTree(html), root); }

std::string narrow(std::wstring_view text) { return {text.begin(), text.end()}; }

std::string number(const char* format, double value) {
    char text[40];
    snprintf(text, sizeof text, format, value);
    return text;
}

/// The words between bars, "/" for a line feed, then what differs from the root style.
std::string described(const TextRun& run) {
    std::string text = "|";
    for (const std::wstring& word : run.words) text += (word == lineFeed ? "/" : narrow(word)) + "|";
    const FontRecord& font = run.style.logFont;
    if (font.weight != root.logFont.weight) text += " weight=" + std::to_string(font.weight);
    if (font.italic) text += " italic";
    if (font.underline) text += " underline";
    if (font.strikeout) text += " strikeout";
    if (font.height != root.logFont.height) text += " height=" + std::to_string(font.height);
    if (font.face != root.logFont.face) text += " face=" + narrow(font.face);
    char color[20];
    snprintf(color, sizeof color, " %08X", run.style.color);
    if (run.style.color != root.color) text += color;
    if (run.isLink()) text += " href=" + narrow(run.style.href);
    const LineHeight& line = run.style.lineHeight;
    if (line != root.lineHeight) text += " line=" + std::to_string(line.kind) + number(":%g", line.value);
    return text;
}

std::vector<std::string> describedRuns(std::string_view html) {
    std::vector<std::string> runs;
    for (const TextRun& run : runsOf(html)) runs.push_back(described(run));
    return runs;
}

TEST(Markup, SplitsTheTextIntoRunsOfOneStyle) {
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"", {}},
        {"one  two\n\tthree ", {"|one|two|three|"}},
        // Each element by itself.
        {"<A HREF=\"action:go\">x</A>", {"|x| FF6897FD href=action:go"}},
        {"<B>x</B>", {"|x| weight=700"}},
        {"<I>x</I>", {"|x| italic"}},
        {"<STRIKE>x</STRIKE>", {"|x| strikeout"}},
        {"<U>x</U>", {"|x| underline"}},
        {"a<BR>b", {"|a|/|", "|b|"}},
        {"a<BR><BR>b", {"|a|/|", "|/|", "|b|"}},
        // Other elements have no style, but end the run too.
        {"<SPAN>x</SPAN><P>y<STRONG>z</STRONG></P>", {"|x|", "|y|", "|z|"}},
        {"x<S>y</S><!-- no word --><nonsense>z</nonsense>", {"|x|", "|y|", "|z|"}},
        // A run ends at every tag.
        {"<B>Hello</B> world", {"|Hello| weight=700", "|world|"}},
        {"A<B>B</B>C", {"|A|", "|B| weight=700", "|C|"}},
        {"a <B> b <I>c</I> d </B> e", {"|a|", "|b| weight=700", "|c| weight=700 italic", "|d| weight=700", "|e|"}},
        {"<B>a<BR>b</B>", {"|a|/| weight=700", "|b| weight=700"}},
        // An inner element changes only its own properties.
        {"<A HREF=x>a<A>b</A>", {"|a| FF6897FD href=x", "|b| FF6897FD"}},
        {"<A HREF=x><FONT COLOR=#010203>a</FONT></A>", {"|a| FF010203 href=x"}},
        {"<FONT COLOR=#010203><A HREF=x>a</A>b</FONT>", {"|a| FF6897FD href=x", "|b| FF010203"}},
    };
    for (const auto& [html, runs] : cases) EXPECT_THAT(describedRuns(html), ElementsAreArray(runs)) << html;
}

TEST(Markup, ReadsTheAttributesOfFont) {
    const std::pair<const char*, const char*> cases[] = {
        {"COLOR=\"#FF0000\"", "|x| FFFF0000"},
        {"color=\"#0a0B0c\"", "|x| FF0A0B0C"},
        {"COLOR=\"#F00\"", "|x|"},
        {"COLOR=\"FF00000\"", "|x|"},
        {"COLOR=\"#12GG56\"", "|x| FF000012"},
        {"COLOR=\"#\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\"", "|x| FF000000"},
        {"ARGB=\"#80FF0000\"", "|x| 80FF0000"},
        {"ARGB=\"#FF0000\"", "|x|"},
        {"COLOR=\"#010203\" ARGB=\"#80FF0000\"", "|x| FF010203"},
        {"COLOR=\"#010\" ARGB=\"#80FF0000\"", "|x| 80FF0000"},
        {"FACE=\"Other Face\"", "|x| face=Other Face"},
        {"FACE=\"1234567890123456789012345678901234567890\"", "|x| face=1234567890123456789012345678901"},
        {"SIZE=\"24\"", "|x| height=24"},
        {"SIZE=\" 24px\"", "|x| height=24"},
        {"SIZE=\"-20\"", "|x| height=-20"},
        {"SIZE=\"\"", "|x|"},
        {"SIZE=\"large\"", "|x| height=0"},
        {"SIZE=\"99999999999999\"", "|x| height=268435456"},
        {"LINE-HEIGHT=\"150%\"", "|x| line=1:1.5"},
        {"LINE-HEIGHT=\"1.5\"", "|x| line=1:1.5"},
        {"LINE-HEIGHT=\"20pX\"", "|x| line=2:20"},
        {"LINE-HEIGHT=\"Auto\"", "|x| line=0:0"},
        {"LINE-HEIGHT=\"tall\"", "|x| line=1:0"},
        {"LINE-HEIGHT=\"inf\"", "|x| line=1:0"},
        {"LINE-HEIGHT=\"\"", "|x|"},
        {"size=16 line-height=19px COLOR=\"#010203\" face=F", "|x| face=F FF010203 line=2:19"},
    };
    for (const auto& [attributes, run] : cases)
        EXPECT_THAT(describedRuns("<FONT " + std::string(attributes) + ">x</FONT>"), ElementsAre(run)) << attributes;
}

TEST(Markup, KeepsCharactersOfAllLanguages) {
    const auto runs = runsOf("\xE3\x82\xB2 &eacute;&#x1F600; \xF0\x9F\x98\x80");
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_THAT(runs[0].words, ElementsAre(L"\x30B2", L"\x00E9\U0001F600", L"\U0001F600"));
}

TEST(Markup, CopiesThePlainTextLikeABrowser) {
    const std::pair<const char*, const wchar_t*> cases[] = {
        {"", L""},
        {" <b> </b> ", L""},
        {"plain  words\n", L"plain words"},
        {"<B>Hello</B> world", L"Hello world"},
        {"A<B>B</B>C", L"ABC"},
        {"see <a href=x>the terms</a>.", L"see the terms."},
        {"a<BR>b<br><br> c<br>", L"a\r\nb\r\n\r\nc"},
        {"<br>a", L"a"},
        {"<p>one</p>\n<p>two<div>three", L"one\r\ntwo\r\nthree"},
        {"&lt;b&gt; &eacute;<!-- silent --><style>x{}</style>", L"<b> \x00E9"},
    };
    for (const auto& [html, words] : cases) EXPECT_EQ(plainText(GumboTree(html)), words) << html;
}

}  // namespace
}  // namespace pdx
