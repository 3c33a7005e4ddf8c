// SPDX-License-Identifier: MIT
#include "support/WordErrors.hpp"

#include <gmock/gmock.h>

namespace vek::test {
namespace {

TEST(WordErrorsTest, FiguresAreTheWordsTheyAreSpokenAs) {
  EXPECT_EQ(wrongWords("twelve thousand dollars for fifty users", "$12,000 for 50 users."), 0);
  EXPECT_EQ(wrongWords("a fifteen percent discount, two year contract",
                       "A 15% discount. Two-year contract"),
            0);
  EXPECT_EQ(wrongWords("nineteen hundred eighty four", "1984"), 3);
  EXPECT_THAT(spokenWords("100,250"),
              testing::ElementsAre("one", "hundred", "thousand", "two", "hundred", "fifty"));
}

TEST(WordErrorsTest, MissingAddedAndWrongWordsCountOneEach) {
  EXPECT_EQ(wrongWords("ask not what your country can do", "ask what your country can do"), 1);
  EXPECT_EQ(wrongWords("ask not", "so ask not"), 1);
  EXPECT_EQ(wrongWords("the person you are calling", "the person you're calling"), 2);
  EXPECT_EQ(wrongWords("one two three", ""), 3);
}

}  // namespace
}  // namespace vek::test
