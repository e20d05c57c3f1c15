#include "ui/toolkit/rules/GumboTree.h"

#include <gtest/gtest.h>

#include "ui/toolkit/rules/Markup.h"

namespace pdx {
namespace {

std::string repeated(std::string_view part, size_t count) {
    std::string text;
    for (; count > 0; --count) text += part;
    return text;
}

/// Names, words in quotes, and the children of a node in parentheses.
std::wstring outline(const GumboTree& tree, GumboTree::Node node) {
    if (tree.type(node) == NodeType::text) return L"'" + tree.value(node) + L"'";
    if (tree.type(node) == NodeType::other) return L"-";
    std::wstring text = tree.name(node) + L"(";
    for (size_t i = 0; i < tree.childCount(node); ++i) text += outline(tree, tree.child(node, i));
    return text + L")";
}

TEST(GumboTree, BuildsTheTreeOfABrowser) {
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

/// The time grows with the square of the length: 140 KB of the last row took 50 seconds without the bounds.
TEST(GumboTree, CutsTheTextAfter500TagsAnd16Kilobytes) {
    constexpr size_t longest = 16'384;
    const std::tuple<std::string, bool, std::wstring> rows[] = {
        {std::string(longest, 'a'), false, std::wstring(longest, L'a')},
        {std::string(longest + 1, 'a'), true, std::wstring(longest, L'a')},
        {repeated("a<x>", 500) + "end", false, std::wstring(500, L'a') + L"end"},
        {repeated("a<x>", 501) + "end", true, std::wstring(501, L'a')},
        {repeated("a<b></x>", 20'000), true, std::wstring(251, L'a')},
    };
    for (const auto& [text, cut, words] : rows) {
        const GumboTree tree(text);
        EXPECT_EQ(tree.wasCut(), cut) << text.substr(0, 20);
        EXPECT_EQ(plainText(tree), words) << text.substr(0, 20);
    }
}

}  // namespace
}  // namespace pdx
