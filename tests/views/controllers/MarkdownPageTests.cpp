// SPDX-License-Identifier: MIT
#include "views/MarkdownPage.hpp"

#include <gtest/gtest.h>

namespace vek {
namespace {

struct MarkdownPageTest : testing::Test {
  MarkdownPage page;

  /// Lays all of it out.
  void show(QString const& content) {
    page.setContent(content + QStringLiteral("\n\nend"));
    page.rectOf(QStringLiteral("end"));
  }
};

TEST_F(MarkdownPageTest, AsksForImagesWhereTheirAddressesLead) {
  QStringList alone, inLines;
  auto const noting = [](QStringList& addresses) {
    return [&addresses](QUrl const& url) {
      addresses.append(url.toString());
      return QImage();
    };
  };
  page.setImageProvider(noting(alone));
  page.setInlineImageProvider(noting(inLines));
  page.setProperty("imageBaseURL", QUrl(QStringLiteral("https://base.org/x/")));
  show(
      QStringLiteral("![a](b.png)\n\n![a](https://other.org/c.png) ![](/d.png)\n\n"
                     "text ![a](../e.png#f)"));
  EXPECT_EQ(alone.join(u' ').toStdString(),
            "https://base.org/x/b.png https://other.org/c.png https://base.org/d.png");
  EXPECT_EQ(inLines.join(u' ').toStdString(), "https://base.org/e.png#f");
}

TEST_F(MarkdownPageTest, IsDrawnAnewInAnotherEnvironment) {
  show(QStringLiteral("upper\nlower"));
  auto const heightOf = [&](char const* text) { return page.rectOf(QString(text)).height(); };
  EXPECT_EQ(page.plainText(), QStringLiteral("upper lower\n\nend"));
  auto const before = heightOf("end");

  auto environment = page.environment();
  environment.softBreakMode = SoftBreak::Mode::lineBreak;
  environment.theme.paragraph = [style = environment.theme.paragraph](auto const& paragraph) {
    return style(paragraph).styled({.size = RelativeSize::em(2)});
  };
  page.setEnvironment(environment);
  EXPECT_EQ(page.plainText(), QStringLiteral("upper\nlower\n\nend"));
  EXPECT_GT(heightOf("end"), 1.5 * before);
}

}  // namespace
}  // namespace vek
