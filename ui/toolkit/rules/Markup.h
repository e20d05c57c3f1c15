// The content of a label's markup: its words in runs of one style, and its plain words.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ui/toolkit/rules/GumboTree.h"
#include "ui/toolkit/rules/TextRun.h"

namespace pdx {

/// The runs of the tree's body in order; rootStyle is the style outside all elements. A run ends at every tag, and so
/// does a word. The elements A, B, BR, I, STRIKE, U and FONT have an effect; all others only end the run.
std::vector<TextRun> walkMarkup(const GumboTree& tree, const TextStyle& rootStyle);

/// The words of the body as a browser copies them. Tags within a line do not separate words, white space is one blank,
/// and lines end ("\r\n") at BR and around block elements.
std::wstring plainText(const GumboTree& tree);

/// The value of a LINE-HEIGHT attribute: "auto", "150%" or "1.5" (factors), "20px". A text without a number is 0.
LineHeight parseLineHeight(std::wstring_view value);

}  // namespace pdx
