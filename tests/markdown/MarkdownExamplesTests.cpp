// SPDX-License-Identifier: MIT
// Every example of two texts that define the language, and texts that mean harm.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
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
  constexpr std::size_t depth = 10'000;
  for (auto const& markdown :
       {repeated(depth, "> ") + "a", repeated(depth, "*a **b ") + repeated(depth, "c** d*"),
        repeated(depth, "[") + "a" + repeated(depth, "](b)"), repeated(depth, "- ") + "a",
        repeated(depth, "[a](b"), repeated(depth, "**x *y ")}) {
    auto const content = MarkdownContent(markdown);
    EXPECT_TRUE(MarkdownContent(markdown) == content);
    EXPECT_TRUE(MarkdownDocument(content).content() == content);
  }
}

TEST(DeepMarkdown, DiffersWhereItsInnermostNodeDiffers) {
  auto const quotes = repeated(20'000, "> ");
  EXPECT_FALSE(MarkdownContent(quotes + "a") == MarkdownContent(quotes + "b"));
  EXPECT_TRUE(MarkdownContent(quotes + "a") == MarkdownContent(quotes + "a"));
}

TEST(WideMarkdown, IsAGridOnlyWhileItCanBeRead) {
  auto const isTable = [](std::size_t columns, std::size_t rows) {
    auto const header = repeated(columns, "|a") + "|\n" + repeated(columns, "|-") + "|\n";
    auto const content = MarkdownContent(header + repeated(rows, "|b\n"));
    return std::holds_alternative<BlockNode::table>(content.blocks[0].value);
  };
  EXPECT_TRUE(isTable(900, 20));
  EXPECT_FALSE(isTable(10'000, 20));
  EXPECT_FALSE(isTable(900, 20'000));
}

TEST(WideMarkdown, MayHaveATableAmongManyOtherLines) {
  auto const prose = repeated(2000, "a\n\n") + repeated(4000, "b\n") + "\n";
  auto const table = repeated(50, "|a") + "|\n" + repeated(50, "|-") + "|\n\n";
  auto const hasTable = [](std::string const& markdown) {
    auto const isTable = [](BlockNode const& block) {
      return std::holds_alternative<BlockNode::table>(block.value);
    };
    return std::ranges::any_of(MarkdownContent(markdown).blocks, isTable);
  };
  EXPECT_TRUE(hasTable(prose + table + prose));
  EXPECT_FALSE(hasTable(repeated(
      300, repeated(50, "|a") + "|\n" + repeated(50, "|-") + "|\n" + repeated(20, "b\n") + "\n")));
}

}  // namespace
}  // namespace vek
