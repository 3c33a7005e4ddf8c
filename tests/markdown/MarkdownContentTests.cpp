// SPDX-License-Identifier: MIT
#include "markdown/MarkdownContent.hpp"

#include <gtest/gtest.h>

#include "markdown/InlineText.hpp"
#include "markdown/MarkdownDocument.hpp"
#include "records/MarkdownText.hpp"

namespace vek {
namespace {

using Block = BlockNode;
using Inline = InlineNode;

Inline text(char const* content) {
  return Inline::text{content};
}

Block line(char const* content) {
  return Block::paragraph{{text(content)}};
}

void expectTree(std::string_view markdown, Children<BlockNode> const& blocks) {
  EXPECT_EQ(MarkdownContent(markdown), MarkdownContent(blocks)) << markdown;
}

TEST(MarkdownContent, AnEmptyTextHasNoBlocks) {
  expectTree("", {});
  expectTree("\n \n\t\n", {});
}

TEST(MarkdownContent, BlocksKeepWhatTheTextSays) {
  expectTree("# One\n\nSix\n---\n###### Six",
             {Block::heading{1, {text("One")}}, Block::heading{2, {text("Six")}},
              Block::heading{6, {text("Six")}}});
  expectTree("> a\n>\n> > b", {Block::blockquote{{line("a"), Block::blockquote{{line("b")}}}}});
  expectTree("```swift ui\nlet\n```\n\n    bare\n",
             {Block::codeBlock{"swift ui", "let\n"}, Block::codeBlock{{}, "bare\n"}});
  expectTree("<div>\n*a*\n</div>\n\n***",
             {Block::htmlBlock{"<div>\n*a*\n</div>\n"}, Block::thematicBreak{}});
}

TEST(MarkdownContent, ListsKnowTheirKindTheirTightnessAndTheirStart) {
  expectTree("- a\n- b", {Block::bulletedList{true, {{{line("a")}}, {{line("b")}}}}});
  expectTree("5. a\n\n6. b", {Block::numberedList{false, 5, {{{line("a")}}, {{line("b")}}}}});
  expectTree("- [x] a\n- [ ] b",
             {Block::taskList{true, {{true, {line("a")}}, {false, {line("b")}}}}});
  expectTree("- [X] a\n- b", {Block::taskList{true, {{true, {line("a")}}, {false, {line("b")}}}}});
  expectTree("1. [x] a", {Block::numberedList{true, 1, {{{line("a")}}}}});
}

TEST(MarkdownContent, TablesHaveAnAlignmentAColumnAndTheHeaderFirst) {
  using enum RawTableColumnAlignment;
  auto const row = [](char const* a, char const* b) {
    return RawTableRow{{{{text(a)}}, {{text(b)}}}};
  };
  expectTree("| a | b |\n|---|--:|\n| c | d |",
             {Block::table{{none, right}, {row("a", "b"), row("c", "d")}}});
  auto const wide = MarkdownContent("|a|b|\n|:-|:-:|");
  EXPECT_EQ(std::get<Block::table>(wide.blocks[0].value).columnAlignments,
            (std::vector{left, center}));
}

std::string repeated(std::string const& part, std::size_t count) {
  std::string text;
  for (; count > 0; --count) text += part;
  return text;
}

TEST(MarkdownContent, OrdinaryDocumentsAreReadWhole) {
  std::string const table = "| a | b | c |\n|---|--:|:-:|\n";
  std::string const end = "\n\n***\n\n|x|\n|-|\n";
  std::string steps;
  for (std::size_t level = 0; level < 12; ++level)
    steps += std::string(2 * level, ' ') + "- **a**\n";
  for (auto const& text :
       {table + repeated("| 2024-01-02 | 120 | -5.2 |\n", 500),
        table + repeated("| - | - | - |\n| :-: | 1 | 2 |\n", 250), repeated("* ", 200),
        "- " + repeated("5 10 15 ", 200), steps, "    " + repeated("1. 2. 3 ", 500) + "\n",
        repeated("> ", 15) + "a\n" + repeated("> b\n", 500), repeated("**b** [a](c) ![](d) ", 300),
        repeated("- **b** [a](c) <!-- d -->\n", 3000),
        repeated("![](https://a.org/b.png) ", 10'000), repeated("- [x] a\n", 30'000),
        repeated("[a]: b\n", 30'000)}) {
    auto const& blocks = MarkdownContent(text + end).blocks;
    ASSERT_GE(blocks.size(), 2U);
    EXPECT_TRUE(std::holds_alternative<Block::table>(blocks[blocks.size() - 1].value))
        << text.substr(0, 80);
    EXPECT_TRUE(std::holds_alternative<Block::thematicBreak>(blocks[blocks.size() - 2].value));
  }
}

TEST(MarkdownContent, WhatTakesTheSquareOfItsLengthStaysText) {
  std::string const end = "\n\n|x|\n|-|\n";
  auto const alternating = repeated("|-|-|\n|-|-|-|\n", 2000);
  for (auto const& text :
       {repeated("- ", 4000) + "a" + repeated("\n", 8000), "a " + repeated("<?", 30'000),
        repeated("*a ", 20'000) + repeated("[a](b) ", 10'000),
        repeated("a|", 4000) + "\n" + alternating, "<!--\n|a|\n|-|\n|-->\n" + alternating,
        "|\\|a|\n|-|-|\n" + alternating, "> a\n|a|b|\n|-|-|\nb\n" + alternating,
        repeated("|a", 2000) + "\n" + repeated("|-", 2000) + "\n" + repeated("a\n", 2000)}) {
    auto const& blocks = MarkdownContent(text + end).blocks;
    EXPECT_FALSE(std::holds_alternative<Block::table>(blocks[blocks.size() - 1].value))
        << text.substr(0, 80);
  }
}

TEST(MarkdownContent, TextThatStaysAsItStandsKeepsItsLines) {
  using namespace std::literals;
  EXPECT_EQ(
      MarkdownContent(std::string("a\r\n*b\0c*\r\n\r\nd "s) + repeated("<?", 30'000)).blocks[0],
      (Block::paragraph{{text("a"), Inline::lineBreak{}, text("*b\uFFFDc*")}}));
}

TEST(MarkdownContent, LinesKeepTheirStylesLinksAndBreaks) {
  expectTree("a **b *c*** ~~d~~ `e`",
             {Block::paragraph{
                 {text("a "), Inline::strong{{text("b "), Inline::emphasis{{text("c")}}}},
                  text(" "), Inline::strikethrough{{text("d")}}, text(" "), Inline::code{"e"}}}});
  expectTree("a\nb  \nc<br>d",
             {Block::paragraph{{text("a"), Inline::softBreak{}, text("b"), Inline::lineBreak{},
                                text("c"), Inline::html{"<br>"}, text("d")}}});
  expectTree(
      "[a](/b \"title\") ![c](d.png) []()",
      {Block::paragraph{{Inline::link{"/b", {text("a")}}, text(" "),
                         Inline::image{"d.png", {text("c")}}, text(" "), Inline::link{"", {}}}}});
  expectTree("www.a.org",
             {Block::paragraph{{Inline::link{"http://www.a.org", {text("www.a.org")}}}}});
}

TEST(MarkdownContent, PlainTextMadeMarkdownIsAParagraphOfItself) {
  for (std::string const plain :
       {"# h", "- [x] a", "+ a", "* a", "12. a", "3) a", "2026. a", "> a", "```", "~~~ a",
        "===", "---", "_a_ **b** `c` ~d~", "[a](b) ![a](b) [a]: b", "<b>a</b> &amp; &#35;", "a | b",
        "\\# a", "1.", "5 - 3 = 2. Yes"}) {
    for (auto const* blanksBefore : {"", "  ", "\t", "      ", "\v \t"}) {
      auto const content = MarkdownContent(markdownText(blanksBefore + plain + " \r"));
      ASSERT_EQ(content.blocks.size(), 1U) << plain;
      auto const* paragraph = std::get_if<Block::paragraph>(&content.blocks[0].value);
      ASSERT_TRUE(paragraph) << plain;
      EXPECT_EQ(plainText(paragraph->content), plain);
    }
  }
}

}  // namespace
}  // namespace vek
