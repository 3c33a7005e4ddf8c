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

TEST(MarkdownContent, ATableStaysTextWhereNoGridCanBeDrawn) {
  auto const content =
      MarkdownDocument::parse("| a |\n|---|", MarkdownDocument::Tables::asText).content();
  EXPECT_EQ(content, MarkdownContent(
                         {Block::paragraph{{text("| a |"), Inline::softBreak{}, text("|---|")}}}));
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
