// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QQuickPaintedItem>
#include <QTimer>
#include <QUrl>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "markdown/MarkdownEnvironment.hpp"
#include "views/AccessibleDocument.hpp"
#include "views/DocumentImages.hpp"
#include "views/DocumentLayout.hpp"
#include "views/FocusedLink.hpp"

namespace vek {

/// A window on a document: as high as what is seen of it, drawn anew as it moves. What is not seen
/// takes no picture. Text is chosen with the mouse, across blocks.
class MarkdownPage : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  /// A text, and whether it is Markdown.
  Q_PROPERTY(QString content READ content WRITE setContent NOTIFY contentChanged)
  Q_PROPERTY(bool isPlain MEMBER isPlain_ WRITE setIsPlain NOTIFY contentChanged)
  /// What the text is, for those who do not see it.
  Q_PROPERTY(QString title MEMBER title_ NOTIFY contentChanged)
  Q_PROPERTY(QVariantMap colors READ colors WRITE setColors NOTIFY colorsChanged)
  Q_PROPERTY(QUrl baseURL MEMBER baseURL_ NOTIFY baseURLChanged)
  /// Its theme and what else shapes it. Who wants another look changes a copy of the present one.
  Q_PROPERTY(vek::MarkdownEnvironment environment READ environment WRITE setEnvironment NOTIFY
                 environmentChanged)
  Q_PROPERTY(QUrl imageBaseURL MEMBER imageBaseURL_ NOTIFY baseURLChanged)
  /// How far the upper edge is below that of the document.
  Q_PROPERTY(qreal scroll READ scroll WRITE setScroll NOTIFY scrollChanged)
  /// How much of the document is to be seen at most.
  Q_PROPERTY(qreal viewHeight MEMBER viewHeight_ WRITE setViewHeight NOTIFY viewHeightChanged)
  Q_PROPERTY(qreal documentHeight READ documentHeight NOTIFY documentHeightChanged)
  /// The document's text without its marks.
  Q_PROPERTY(QString plainText READ plainText NOTIFY documentChanged)
  Q_PROPERTY(QString selectedText READ selectedText NOTIFY selectionChanged)
  /// Where the link leads that is under the pointer, or else has the focus; empty for nowhere.
  Q_PROPERTY(QString hoveredLink READ hoveredLink NOTIFY hoveredLinkChanged)
  /// The keyboard has come to it as a whole, and to none of its links.
  Q_PROPERTY(bool isRinged READ isRinged NOTIFY isRingedChanged)
  /// What is looked for, how often it is there, and which of these is the present one, or -1.
  Q_PROPERTY(QString searched READ searched WRITE setSearched NOTIFY foundChanged)
  Q_PROPERTY(int foundCount READ foundCount NOTIFY foundChanged)
  Q_PROPERTY(int foundIndex READ foundIndex WRITE setFoundIndex NOTIFY foundChanged)

 public:
  explicit MarkdownPage(QQuickItem* parent = nullptr);

  [[nodiscard]] DocumentLayout& layout() { return layout_; }
  [[nodiscard]] AccessibleDocument& accessibleDocument();
  [[nodiscard]] QString title() const { return title_; }
  [[nodiscard]] QString content() const { return content_; }
  [[nodiscard]] MarkdownEnvironment const& environment() const { return environment_; }
  [[nodiscard]] QVariantMap colors() const { return colors_; }
  [[nodiscard]] qreal scroll() const { return scroll_; }
  [[nodiscard]] qreal documentHeight() const { return documentHeight_; }
  [[nodiscard]] QString plainText() const;
  [[nodiscard]] QString selectedText() const;
  [[nodiscard]] QString hoveredLink() const { return hoveredLink_; }
  [[nodiscard]] bool isRinged() const { return isRinged_; }
  [[nodiscard]] FocusedLink const& focusedLink() const { return focusedLink_; }
  [[nodiscard]] QString searched() const { return searched_; }
  [[nodiscard]] int foundCount() const { return static_cast<int>(found_.size()); }
  [[nodiscard]] int foundIndex() const { return foundIndex_; }

  void setContent(QString const& content);
  void setIsPlain(bool isPlain);
  void setEnvironment(MarkdownEnvironment environment);
  /// Where images come from that stand alone, and those among words. They have come when
  /// `imagesChanged` says so.
  using ImageSource = std::function<QImage(QUrl const& url)>;
  void setImageProvider(ImageSource imageProvider);
  void setInlineImageProvider(ImageSource inlineImageProvider);
  void imagesChanged();
  void setColors(QVariantMap const& colors);
  void setScroll(qreal scroll);
  void setViewHeight(qreal height);
  void setSearched(QString const& searched);
  void setFoundIndex(int index);
  /// A range of the document's text.
  using Range = std::pair<qsizetype, qsizetype>;
  [[nodiscard]] Range selection() const;
  void setSelection(qsizetype anchor, qsizetype cursor);
  /// Asks for a range to be brought into view.
  void reveal(qsizetype from, qsizetype to);
  /// Goes where a link leads, if it leads anywhere.
  void follow(std::string const& destination);

  Q_INVOKABLE void selectAll();
  Q_INVOKABLE void deselect();
  /// Puts what is chosen on the clipboard.
  Q_INVOKABLE void copy() const;
  /// Where a text stands for the first time, in the document; empty when it does not.
  Q_INVOKABLE QRectF rectOf(QString const& text);

  void paint(QPainter* painter) override;

  Q_SIGNAL void contentChanged();
  Q_SIGNAL void environmentChanged();
  Q_SIGNAL void colorsChanged();
  Q_SIGNAL void baseURLChanged();
  Q_SIGNAL void scrollChanged();
  Q_SIGNAL void viewHeightChanged();
  Q_SIGNAL void documentChanged();
  Q_SIGNAL void documentHeightChanged();
  Q_SIGNAL void selectionChanged();
  Q_SIGNAL void hoveredLinkChanged();
  Q_SIGNAL void isRingedChanged();
  Q_SIGNAL void foundChanged();
  /// A part of the document should come into view, from `y` on.
  Q_SIGNAL void revealRequested(qreal y, qreal height);
  Q_SIGNAL void linkActivated(QUrl const& url);
  Q_SIGNAL void menuRequested(qreal x, qreal y);

 protected:
  void componentComplete() override;
  void updatePolish() override;
  void geometryChange(QRectF const& now, QRectF const& before) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void hoverMoveEvent(QHoverEvent* event) override;
  void hoverLeaveEvent(QHoverEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void makeDocument();
  void imageCame(QUrl const& url);
  [[nodiscard]] QUrl urlOf(RawImageData const& image) const;
  [[nodiscard]] ShownImage shownImage(RawImageData const& image, ImagePlace place);
  void measured();
  [[nodiscard]] QUrl linkUnder(QPointF point);
  void setHoveredLink(QUrl const& url);
  void setIsRinged(bool isRinged);
  void forgetLinks();
  void find();
  void showFound();
  bool moveToLink(FocusedLink::Step step);
  void tellOfFocus();
  [[nodiscard]] QPointF inDocument(QPointF point) const { return {point.x(), point.y() + scroll_}; }

  DocumentImages images_;
  DocumentLayout layout_;
  std::unique_ptr<AccessibleDocument> accessibleDocument_;
  QTimer measuring_;
  MarkdownEnvironment environment_;
  ImageSource imageProvider_;
  ImageSource inlineImageProvider_;
  QString content_;
  QString title_;
  bool isPlain_ = false;
  QVariantMap colors_;
  QUrl baseURL_;
  QUrl imageBaseURL_;
  qreal scroll_ = 0;
  qreal viewHeight_ = 0;
  qreal documentHeight_ = 0;
  qsizetype anchor_ = 0;
  qsizetype cursor_ = 0;
  QString hoveredLink_;
  FocusedLink focusedLink_;
  bool isRinged_ = false;
  QString pressedLink_;
  QString searched_;
  std::vector<Range> found_;
  int foundIndex_ = -1;
};

}  // namespace vek
