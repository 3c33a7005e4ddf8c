// SPDX-License-Identifier: MIT
#include "app/Terminal.hpp"

namespace vek {
namespace {

TEST(Terminal, ShowsTextAndObeysNone) {
  struct Case {
    std::string text;
    std::string shown;
  };
  for (auto const& [text, shown] :
       std::vector<Case>{{"two\nlines\tand a tab", "two\nlines\tand a tab"},
                         {"Grüße, 你好, naïve – 😀", "Grüße, 你好, naïve – 😀"},
                         {"a\x1b[2Jb\x1b]0;title\x07 c", "a[2Jb]0;title c"},
                         {"over\rwritten\b\x7f", "overwritten"},
                         {"late \xc2\x9b"
                          "31m and \xc2\x80",
                          "late 31m and "},
                         {std::string("nul\0 byte", 9), "nul byte"},
                         {"\xc2\xa0kept\xc2", "\xc2\xa0kept\xc2"}}) {
    EXPECT_EQ(printable(text), shown);
  }
}

TEST(Terminal, ALongTextEndsInItsLastWords) {
  std::string_view const text = "what was said just now";
  EXPECT_EQ(lastWords(text, 22), text);
  EXPECT_EQ(lastWords(text, 21), "…was said just now");
  EXPECT_EQ(lastWords(text, 9), "…just now");
  EXPECT_EQ(lastWords(text, 8), "…now");
  EXPECT_EQ(lastWords("Donaudampfschifffahrt", 6), "…fahrt");
  EXPECT_EQ(lastWords("öäü öäü", 5), "…öäü");
  EXPECT_EQ(lastWords(text, 1), "…");
  EXPECT_EQ(lastWords(text, 0), "");
}

}  // namespace
}  // namespace vek
