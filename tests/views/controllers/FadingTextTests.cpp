// SPDX-License-Identifier: MIT
#include "views/FadingText.hpp"

#include <gtest/gtest.h>

namespace vek::test {
namespace {

struct ShownText : FadingText {
  ShownText() {
    setPixelSize(13);
    setSize({208, 40});
  }
};

TEST(FadingText, LaysOutOnlyWhatShowsOfADayOfText) {
  ShownText text;
  auto const day = QStringLiteral("so many words that nobody can count them\n").repeated(20'000);
  text.setText(day);
  auto const shown = text.laidOutBlocks();
  EXPECT_GT(shown, 0U);
  EXPECT_LT(shown, 10U);
  text.setText(day + QStringLiteral("and one more"));
  EXPECT_LT(text.laidOutBlocks(), 10U);
  text.setScroll(2000);
  EXPECT_EQ(text.scroll(), 2000);
  EXPECT_GT(text.laidOutBlocks(), shown) << "what is scrolled to shows";
  EXPECT_LT(text.laidOutBlocks(), 200U);

  // Without a break it is cut into blocks by itself.
  text.setText(QString(day).replace(u'\n', u' '));
  EXPECT_EQ(text.scroll(), 0);
  EXPECT_LT(text.laidOutBlocks(), 10U);
}

}  // namespace
}  // namespace vek::test
