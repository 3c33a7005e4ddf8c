// SPDX-License-Identifier: MIT
#include "views/MarkdownPage.hpp"

#include <gtest/gtest.h>
#include <QAccessible>
#include <QCoreApplication>
#include <QFocusEvent>

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

/// A line `role: name` for each thing, further in the deeper it stands.
QString readAloud(QAccessibleInterface& thing, int depth = 0) {
  auto const name = thing.text(QAccessible::Name);
  auto const description = thing.text(QAccessible::Description);
  auto read = QString(depth, u' ') + QString::fromLatin1(qAccessibleRoleString(thing.role()));
  if (!name.isEmpty()) read += QStringLiteral(": ") + name;
  if (!description.isEmpty()) read += QStringLiteral(" (%1)").arg(description);
  if (thing.state().checkable)
    read += thing.state().checked ? QStringLiteral(" ☑") : QStringLiteral(" ☐");
  read += u'\n';
  for (int i = 0; i < thing.childCount(); ++i) {
    EXPECT_EQ(thing.child(i)->parent(), &thing);
    EXPECT_EQ(thing.indexOfChild(thing.child(i)), i);
    read += readAloud(*thing.child(i), depth + 1);
  }
  return read;
}

TEST_F(MarkdownPageTest, IsReadAloudAsItNests) {
  show(
      QStringLiteral("## Title\n\nOne [two **three**](https://a.org)\n\n- [x] done\n- [ ] open\n"
                     "  1. first\n\n> said\n\n```\ncode\n```\n\n|a|b|\n|-|-|\n|c|[d](e)|\n\n"
                     "![picture](f.png)\n\n---"));
  EXPECT_EQ(readAloud(*QAccessible::queryAccessibleInterface(&page)).toStdString(), R"(Document
 Heading: Title (Level 2)
 Paragraph: One two three
  Link: two three (https://a.org)
 List
  ListItem ☑
   Paragraph: done
  ListItem ☐
   Paragraph: open
   List
    ListItem: 1.
     Paragraph: first
 Section (Quote)
  Paragraph: said
 Paragraph: code (Code)
 Table
  ColumnHeader: a
  ColumnHeader: b
  Cell: c
  Cell: d
   Link: d (e)
 Graphic: picture
 Separator
 Paragraph: end
)");
}

TEST_F(MarkdownPageTest, LetsThoseWhoDoNotSeeItReadWordsCellsAndLinks) {
  show(QStringLiteral("One [two](https://a.org) three.\n\n|a|b|\n|-|-|\n|c|d|"));
  auto& document = *QAccessible::queryAccessibleInterface(&page);
  auto& paragraph = *document.child(0)->textInterface();
  int from = 0, to = 0;
  EXPECT_EQ(paragraph.textAtOffset(5, QAccessible::WordBoundary, &from, &to).trimmed(),
            QStringLiteral("two"));
  paragraph.setSelection(0, 4, 13);
  EXPECT_EQ(page.property("selectedText"), QStringLiteral("two three"));
  EXPECT_EQ(paragraph.selectionCount(), 1);
  EXPECT_EQ(document.child(1)->child(0)->textInterface()->selectionCount(), 0);

  auto& table = *document.child(1)->tableInterface();
  EXPECT_EQ(table.rowCount() * 10 + table.columnCount(), 22);
  EXPECT_EQ(table.cellAt(1, 1)->text(QAccessible::Name), QStringLiteral("d"));
  EXPECT_EQ(table.columnDescription(1), QStringLiteral("b"));

  QUrl followed;
  QObject::connect(&page, &MarkdownPage::linkActivated, [&](QUrl const& url) { followed = url; });
  auto& link = *document.child(0)->child(0)->actionInterface();
  link.doAction(link.actionNames().value(0));
  EXPECT_EQ(followed, QUrl(QStringLiteral("https://a.org")));
}

TEST_F(MarkdownPageTest, TellsThoseWhoDoNotSeeItWhichLinkHasTheFocus) {
  show(QStringLiteral("One [two](https://a.org)"));
  auto& document = *QAccessible::queryAccessibleInterface(&page);
  auto& link = *document.child(0)->child(0);
  EXPECT_TRUE(link.state().focusable && !link.state().focused);
  QFocusEvent tab(QEvent::FocusIn, Qt::TabFocusReason);
  QCoreApplication::sendEvent(&page, &tab);
  EXPECT_TRUE(link.state().focused);
  EXPECT_EQ(document.focusChild(), &link);
  show(QStringLiteral("Other"));
  EXPECT_EQ(document.focusChild(), nullptr);
}

}  // namespace
}  // namespace vek
