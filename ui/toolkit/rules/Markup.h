// What the markup of a label says: its words in runs of one style, and its plain words.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ui/toolkit/rules/MarkupTree.h"
#include "ui/toolkit/rules/TextRun.h"

namespace pdx {

/// The runs of the tree's body in order; rootStyle is the style outside of all elements. Every tag cuts: a run ends in
/// front of an element and at its end, and no word goes on across it. The elements that have an effect are A, B, BR, I,
/// STRIKE, U and FONT; all others are as if they were not there.
std::vector<TextRun> walkMarkup(const MarkupTree& tree, const TextStyle& rootStyle);

/// The words of the body as a browser gives them: tags within a line do not part words, white space is one blank,
/// a line ends ("\r\n") at BR and around paragraphs and the like.
std::wstring plainText(const MarkupTree& tree);

/// The value of a LINE-HEIGHT attribute: "auto", "150%" or "1.5" (factors), "20px"..
LineHeight parseLineHeight(std::wstring_view value);

}  // namespace pdx
