// SPDX-License-Identifier: MIT
// Every example of two texts that define the language, and texts that mean harm.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "markdown/MarkdownDocument.hpp"

namespace vek {
namespace {

constexpr std::string_view fence = "````````````````````````````````";

std::vector<std::string> examples(std::string const& name) {
  std::ifstream file(VEK_MARKDOWN_EXAMPLES "/" + name);
  std::vector<std::string> found;
  bool isInside = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(fence)) {
      isInside = !isInside;
      if (isInside) found.emplace_back();
    } else if (isInside) {
      for (std::string_view const tab = "→"; line.find(tab) != std::string::npos;)
        line.replace(line.find(tab), tab.size(), "\t");
      found.back() += line + "\n";
    }
  }
  return found;
}

std::string repeated(std::size_t count, std::string_view part) {
  std::string text;
  while (count-- > 0) text += part;
  return text;
}

/// The tree does not tell "1)" from "1.".
std::string withoutDelimiters(std::string const& text) {
  static std::regex const delimiter(R"(([0-9])[.)](?=\s))");
  return std::regex_replace(text, delimiter, "$1");
}

void expectWhole(MarkdownDocument const& document, std::string_view markdown) {
  auto const content = document.content();
  MarkdownDocument const written(content);
  EXPECT_EQ(withoutDelimiters(written.plainText()), withoutDelimiters(document.plainText()))
      << markdown;
  EXPECT_TRUE(written.content() == content) << markdown;
}

class Examples : public testing::TestWithParam<char const*> {};

TEST_P(Examples, KeepTheirTextAndSurviveBeingWrittenBack) {
  auto const all = examples(GetParam());
  EXPECT_GT(all.size(), 640);
  for (auto const& markdown : all) expectWhole(MarkdownDocument::parse(markdown), markdown);
}

INSTANTIATE_TEST_SUITE_P(Markdown, Examples, testing::Values("commonmark.txt", "gfm.txt"));

TEST(DeepMarkdown, IsReadComparedWrittenAndEndedWithoutRecursion) {
  constexpr std::size_t depth = 7000;
  for (auto const& markdown : {repeated(depth, "*a **b ") + repeated(depth, "c** d*"),
                               repeated(depth, "[") + "a" + repeated(depth, "](b)"),
                               repeated(depth, "[a](b"), repeated(depth, "**x *y ")}) {
    auto const content = MarkdownContent(markdown);
    EXPECT_TRUE(MarkdownContent(markdown) == content);
    EXPECT_TRUE(MarkdownDocument(content).content() == content);
  }
}

TEST(DeepMarkdown, DiffersWhereItsInnermostNodeDiffers) {
  auto const quotes = [](char const* innermost) {
    Children<BlockNode> blocks = {BlockNode::paragraph{{InlineNode::text{innermost}}}};
    for (int i = 0; i < 100'000; ++i) blocks = {BlockNode::blockquote{std::move(blocks)}};
    return MarkdownContent(std::move(blocks));
  };
  EXPECT_TRUE(MarkdownDocument(quotes("a")).content() == quotes("a"));
  EXPECT_FALSE(quotes("a") == quotes("b"));
}

bool isText(MarkdownContent const& content) {
  return std::ranges::all_of(content.blocks, [](BlockNode const& block) {
    auto const* paragraph = std::get_if<BlockNode::paragraph>(&block.value);
    return paragraph && std::ranges::all_of(paragraph->content, [](InlineNode const& node) {
             return std::holds_alternative<InlineNode::text>(node.value) ||
                    std::holds_alternative<InlineNode::softBreak>(node.value) ||
                    std::holds_alternative<InlineNode::lineBreak>(node.value);
           });
  });
}

/// What is read in the square of its length stays the text that it is, once it is long.
TEST(CostlyMarkdown, StaysText) {
  constexpr std::size_t many = 30'000;
  auto const paragraph = repeated(many, "a\n");
  for (auto const& costly :
       {repeated(many, "a<?"), repeated(many, "a<![CDATA["), repeated(many, "![[]()"),
        repeated(many, "*a") + repeated(many, "[a](b)"), repeated(many, ">"),
        repeated(many, "- ") + "a", repeated(many, "1. ") + repeated(many, "\r\n"),
        "http://a.b" + repeated(many, ")"), repeated(many, "_www."), paragraph + "|a|\n|-|\n",
        paragraph + "|a|\r|-|\r", repeated(many, "a\n|-|-|\n"), "|a|\n|-|\n" + repeated(many, "|"),
        repeated(many, "|a") + "|\n" + repeated(many, "|-") + "|\n"}) {
    EXPECT_TRUE(isText(MarkdownContent(costly))) << costly.substr(0, 20);
    // The text around it stays as it is written.
    EXPECT_TRUE(
        MarkdownDocument::parse("a\n\nb\nc \n\n" + costly).plainText().starts_with("a\n\nb"));
  }
}

/// The short rows of a wide table are filled up.
TEST(CostlyMarkdown, IsNoTableOfMoreCellsThanItsTextHas) {
  auto const isTable = [](char const* row) {
    auto const header = repeated(450, "|a") + "|\n" + repeated(450, "|-") + "|\n";
    return !isText(MarkdownContent(header + repeated(2400, row)));
  };
  EXPECT_FALSE(isTable("b\n"));
  EXPECT_FALSE(isTable("b\r"));
}

TEST(CostlyMarkdown, LeavesTablesAndLinksOfLongTextsAlone) {
  auto const hasTable = [](std::string const& markdown) {
    return std::ranges::any_of(MarkdownContent(markdown).blocks, [](BlockNode const& block) {
      return std::holds_alternative<BlockNode::table>(block.value);
    });
  };
  auto const table = [](std::size_t columns, std::size_t rows) {
    return repeated(columns, "|a") + "|\n" + repeated(columns, "|-") + "|\n" +
           repeated(rows, repeated(columns, "|b") + "|\n") + "\n";
  };
  auto const prose = repeated(2000, "a [b](c) *d*\n\n") + repeated(1000, "- [ ] b\n") + "\n";
  auto const code = "```\n" + repeated(100, repeated(5000, "|") + "\n") + "```\n\n";
  EXPECT_TRUE(hasTable(prose + code + table(50, 4500) + prose));
  EXPECT_TRUE(hasTable(code + table(900, 20)));
  EXPECT_FALSE(isText(MarkdownContent(repeated(500, "字www.a.org，") + "\n\nwww.a.org")));
}

}  // namespace
}  // namespace vek
