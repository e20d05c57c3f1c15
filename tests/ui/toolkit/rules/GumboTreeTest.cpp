#include "ui/toolkit/rules/GumboTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/Repeated.h"

namespace pdx {
namespace {

/// Names, words in quotes, and the children of a node in parentheses.
std::wstring outline(const MarkupTree& tree, MarkupTree::Node node) {
    if (tree.type(node) == NodeType::text) return L"'" + tree.value(node) + L"'";
    if (tree.type(node) == NodeType::other) return L"-";
    std::wstring text = tree.name(node) + L"(";
    for (size_t i = 0; i < tree.childCount(node); ++i) text += outline(tree, tree.child(node, i));
    return text + L")";
}

TEST(GumboTree, IsThatOfABrowser) {
    const std::pair<const char*, const wchar_t*> cases[] = {
        {"", L"BODY()"},
        {"words <B>in</b> fragments", L"BODY('words 'B('in')' fragments')"},
        {"<x-own>a</x-own><Own2/>b", L"BODY(X-OWN('a')OWN2('b'))"},
        {"<html><head><title>t</title></head><body bgcolor=red>x</body></html>y", L"BODY(TITLE()'xy')"},
        {"<!doctype html>x<!-- c --><?p?>", L"BODY('x'--)"},
        {"<ul><li>a<li>b", L"BODY(UL(LI('a')LI('b')))"},
        {"a&amp;b&#xD800;&eacute;&bogus;", L"BODY('a&b\xFFFD\x00E9&bogus;')"},
        {"<script>if (a<b) c</script><style>d</style><title>e</title><template>f</template>",
         L"BODY(SCRIPT()STYLE()TITLE()TEMPLATE())"},
        {"<frameset><frame></frameset>x", L"BODY('x')"},
        {"<svg><path/></svg><image>", L"BODY(SVG(PATH())IMG())"},
        {"a\xC3(\xFF b", L"BODY('a\xFFFD(\xFFFD b')"},
    };
    for (const auto& [html, tree] : cases) {
        const GumboTree parsed(html);
        ASSERT_NE(parsed.body(), nullptr) << html;
        EXPECT_EQ(outline(parsed, parsed.body()), tree) << html;
    }
}

TEST(GumboTree, FindsAttributesInAnyCase) {
    const GumboTree tree("<font Line-Height = '1&percnt;' SIZE=12 face=\"\" size=13 flag>");
    const auto font = tree.child(tree.body(), 0);
    EXPECT_EQ(tree.attribute(font, "LINE-HEIGHT"), L"1%");
    EXPECT_EQ(tree.attribute(font, "size"), L"12") << "the first of two";
    EXPECT_EQ(tree.attribute(font, "FACE"), L"");
    EXPECT_EQ(tree.attribute(font, "FLAG"), L"");
    EXPECT_EQ(tree.attribute(font, "HREF"), L"");
}

/// Many tags or attributes of which no two are alike.
std::string numbered(std::string_view before, size_t count, std::string_view after) {
    std::string text;
    for (size_t i = 0; i < count; ++i) text += std::string(before) + std::to_string(i) + std::string(after);
    return text;
}

TEST(GumboTree, ReadsOrdinaryTextsOfAnyLengthWhole) {
    for (const std::string& text :
         {repeated("some words, a < b, ", 60'000), repeated("<b>x</b> <a href=\"a/b?c=d&e=f\">y</a><br>", 30'000),
          "<a href=\"" + repeated("path", 250'000) + "\">x</a>",
          repeated("<div>", 10'000) + repeated("</div>", 10'000)})
        EXPECT_EQ(affordableLength(text), text.size()) << text.substr(0, 50);
}

TEST(GumboTree, CutsWhatWouldTakeTheSquareOfItsLength) {
    for (const std::string& text : {repeated("<div>", 200'000), repeated("<b>", 300'000),
                                    numbered("<font size=", 60'000, ">"), "<a " + numbered("a", 150'000, " ") + ">x"}) {
        EXPECT_LT(affordableLength(text), text.size()) << text.substr(0, 50);
        EXPECT_GT(affordableLength(text), 10'000u) << text.substr(0, 50);
    }
}

TEST(GumboTree, OfTooManyNodesIsThatOfTheTextsBeginning) {
    // Each paragraph opens all the fonts anew.
    const GumboTree tree("<p>first " + numbered("<font size=", 3000, ">") + repeated("<p>x", 3000));
    const auto paragraph = tree.child(tree.body(), 0);
    EXPECT_EQ(tree.value(tree.child(paragraph, 0)), L"first ");
    EXPECT_LT(tree.childCount(tree.body()), 3000u);
}

}  // namespace
}  // namespace pdx
